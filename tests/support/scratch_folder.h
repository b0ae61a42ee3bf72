// A folder of a test's own, removed with everything in it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "talvek-test-XXXXXX").string();
        if (mkdtemp(name.data())) m_path = name;
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path(const std::string& name) const { return m_path + "/" + name; }
    std::string Write(const std::string& name, const std::string& content) const
    {
        std::ofstream(Path(name), std::ios::binary) << content;
        return Path(name);
    }
    // Empty if there is no such file.
    std::string Read(const std::string& name) const
    {
        std::ifstream file(Path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::vector<std::string> Lines(const std::string& name) const
    {
        std::vector<std::string> lines;
        std::istringstream text(Read(name));
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }

private:
    std::string m_path;
};
