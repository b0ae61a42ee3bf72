// Runs a fuzz entry over files, for compilers without a fuzzer: each argument is a file, or a folder of files.
#include <dirent.h>
#include <stdio.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "talvek/types.h"

extern "C" int LLVMFuzzerTestOneInput(const BYTE* data, size_t size);

namespace {

unsigned g_replayed = 0;

bool Replay(const std::string& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return false;
    if (S_ISDIR(status.st_mode)) {
        DIR* const folder = opendir(path.c_str());
        if (!folder) return false;
        bool replayed = true;
        while (const dirent* entry = readdir(folder))
            if (entry->d_name[0] != '.') replayed = Replay(path + "/" + entry->d_name) && replayed;
        closedir(folder);
        return replayed;
    }
    FILE* const file = fopen(path.c_str(), "rb");
    if (!file) return false;
    std::vector<BYTE> octets(static_cast<size_t>(status.st_size));
    const size_t size = fread(octets.data(), 1, octets.size(), file);
    fclose(file);
    LLVMFuzzerTestOneInput(octets.data(), size);
    ++g_replayed;
    return size == octets.size();
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (Replay(argv[i])) continue;
        fprintf(stderr, "%s: cannot be read\n", argv[i]);
        return 1;
    }
    printf("%u inputs replayed\n", g_replayed);
    return g_replayed == 0;
}
