#include <dlfcn.h>
#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <link.h>
#include <stdio.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/seam.h"
#include "platform/posix/text.h"

using seam::Call;

namespace {

const char kInThisLibrary = 0; // its address tells where this library lies

constexpr size_t kFileNameRoom = NAME_MAX + 1;
constexpr size_t kSymbolRoom = 128; // longer names are looked up in vain, as no entry point has one

// dlsym and dlclose take these two for other things than a library.
bool IsModule(HMODULE module) { return module && reinterpret_cast<uintptr_t>(module) != ~uintptr_t{0}; }

HMODULE NoModule(DWORD error)
{
    seam::SetError(error);
    return nullptr;
}

// "GobiApi.dll" becomes "libGobiApi.so". Returns an error, or ERROR_SUCCESS.
DWORD HostFileName(const WCHAR* name, char (&file)[kFileNameRoom])
{
    char stem[kFileNameRoom];
    if (!name || !*name) return ERROR_INVALID_PARAMETER;
    if (!seam::ToUtf8(name, stem, sizeof stem)) return ERROR_FILENAME_EXCED_RANGE;
    if (strpbrk(stem, "/\\")) return ERROR_MOD_NOT_FOUND; // a name, never a path
    size_t length = strlen(stem);
    if (length > 4 && strcasecmp(stem + length - 4, ".dll") == 0) length -= 4;
    const int written = snprintf(file, sizeof file, "lib%.*s.so", static_cast<int>(length), stem);
    return written < static_cast<int>(sizeof file) ? ERROR_SUCCESS : ERROR_FILENAME_EXCED_RANGE;
}

// The beginning of a library file, read at once: its header, and as a rule the table of its parts.
class FileHead {
public:
    explicit FileHead(int descriptor) : m_descriptor(descriptor)
    {
        const ssize_t size = pread(descriptor, m_octets, sizeof m_octets, 0);
        m_size = size > 0 ? static_cast<uint64_t>(size) : 0;
    }

    // Takes from what was read, or else reads.
    template <class Record>
    bool ReadAt(uint64_t offset, Record* record) const
    {
        if (offset <= m_size && sizeof *record <= m_size - offset) {
            memcpy(record, m_octets + offset, sizeof *record);
            return true;
        }
        return offset <= INT64_MAX && pread(m_descriptor, record, sizeof *record, static_cast<off_t>(offset)) ==
                                          static_cast<ssize_t>(sizeof *record);
    }

private:
    const int m_descriptor;
    uint64_t m_size;
    BYTE m_octets[1024];
};

// Whether the file holds all that the loader would map. The loader does not look, and a library that was cut short
// would end the process with a bus error.
bool IsCompleteLibrary(int descriptor)
{
    struct stat status;
    ElfW(Ehdr) header;
    const FileHead head(descriptor);
    if (fstat(descriptor, &status) != 0 || !head.ReadAt(0, &header)) return false;
    constexpr unsigned char kClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    if (memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != kClass) return false;
    const uint64_t file_size = static_cast<uint64_t>(status.st_size);
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) part;
        if (!head.ReadAt(header.e_phoff + uint64_t{i} * sizeof part, &part)) return false;
        if (part.p_offset > file_size || part.p_filesz > file_size - part.p_offset) return false;
    }
    return true;
}

enum class Search { GoOn, Ended };

// Loads `file` from a folder. Ended with *module null: the file is there, but is no library.
Search LoadFrom(const char* folder, size_t folder_length, const char* file, void** module)
{
    char path[PATH_MAX];
    const int length = snprintf(path, sizeof path, "%.*s/%s", static_cast<int>(folder_length), folder, file);
    if (length >= static_cast<int>(sizeof path)) return Search::GoOn;
    // A library that is in the process already needs no look at its file.
    *module = dlopen(path, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (*module) return Search::Ended;
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return access(path, F_OK) != 0 ? Search::GoOn : Search::Ended;
    const bool complete = IsCompleteLibrary(descriptor);
    close(descriptor);
    if (complete) *module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    return Search::Ended;
}

Search LoadFromFolders(const char* folders, const char* file, void** module)
{
    for (const char* at = folders; at && *at;) {
        const size_t length = strcspn(at, ":");
        if (length > 0 && length < PATH_MAX && LoadFrom(at, length, file, module) == Search::Ended) {
            return Search::Ended;
        }
        at += length + (at[length] == ':' ? 1 : 0);
    }
    return Search::GoOn;
}

Search LoadFromOwnFolder(const char* file, void** module)
{
    Dl_info self;
    if (!dladdr(&kInThisLibrary, &self) || !self.dli_fname) return Search::GoOn;
    const char* slash = strrchr(self.dli_fname, '/');
    if (!slash || slash - self.dli_fname >= PATH_MAX) return Search::GoOn;
    return LoadFrom(self.dli_fname, static_cast<size_t>(slash - self.dli_fname), file, module);
}

// The loader has no code for its errors. "Not found" is the only one that names the file we asked for, rather than one
// that it needs, together with the host's text for a missing file.
bool LoaderFoundNothing(const char* file, const char* message)
{
    char named[kFileNameRoom + 2];
    snprintf(named, sizeof named, "%s: ", file);
    return message && strstr(message, named) && strstr(message, strerror(ENOENT));
}

} // namespace

namespace talvek_platform {

HMODULE LoadLibraryW(const WCHAR* name)
{
    if (seam::Faulted(Call::LoadLibraryW)) return nullptr;
    char file[kFileNameRoom];
    if (const DWORD error = HostFileName(name, file)) return NoModule(error);

    void* module = nullptr;
    if (LoadFromFolders(seam::Environment("TALVEK_LIBRARY_PATH"), file, &module) == Search::GoOn &&
        LoadFromOwnFolder(file, &module) == Search::GoOn) {
        module = dlopen(file, RTLD_NOW | RTLD_LOCAL);
        if (!module && LoaderFoundNothing(file, dlerror())) return NoModule(ERROR_MOD_NOT_FOUND);
    }
    return module ? reinterpret_cast<HMODULE>(module) : NoModule(ERROR_BAD_EXE_FORMAT);
}

FARPROC GetProcAddressW(HMODULE module, const WCHAR* name)
{
    const bool armed = seam::Armed();
    if (armed && seam::FaultedWhileArmed(Call::GetProcAddressW)) return nullptr;
    if (!IsModule(module)) {
        seam::SetError(ERROR_INVALID_HANDLE);
        return nullptr;
    }

    char narrow[kSymbolRoom];
    size_t length = 0;
    if (name) {
        while (length < kSymbolRoom && name[length] > 0 && name[length] < 0x80) {
            narrow[length] = static_cast<char>(name[length]);
            ++length;
        }
    }
    void* address = nullptr;
    if (length > 0 && length < kSymbolRoom && name[length] == 0) {
        narrow[length] = 0;
        if (!armed || !seam::LookedUpAndHidden(narrow)) address = dlsym(module, narrow);
    }
    if (!address) seam::SetError(ERROR_PROC_NOT_FOUND);
    return reinterpret_cast<FARPROC>(address);
}

BOOL FreeLibrary(HMODULE module)
{
    if (seam::Faulted(Call::FreeLibrary)) return FALSE;
    if (!IsModule(module) || dlclose(module) != 0) return seam::Fail(ERROR_INVALID_HANDLE);
    return TRUE;
}

} // namespace talvek_platform
