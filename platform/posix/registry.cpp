#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <new>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/reg_file.h"
#include "platform/posix/seam.h"
#include "platform/posix/sync.h"
#include "platform/posix/text.h"

using seam::Call;
using seam::Lock;
using seam::RegFault;
using seam::RegText;

namespace {

// One value, followed by its name and its data in the same block.
struct ValueNode {
    ValueNode* next;
    size_t name_length;
    DWORD type;
    DWORD size;

    WCHAR* Name() { return reinterpret_cast<WCHAR*>(this + 1); }
    BYTE* Data() { return reinterpret_cast<BYTE*>(Name() + name_length); }
};

} // namespace

namespace talvek_platform {

// What the file held for one key when it was opened.
struct RegistryKey {
    RegistryKey* next_open;
    ValueNode* values; // the last one of the file first, so that it is found before an earlier one of that name
};

} // namespace talvek_platform

namespace {

constexpr size_t kLargestFile = size_t{4} * 1024 * 1024;

seam::Mutex g_mutex;
RegistryKey* g_open_keys = nullptr; // guarded by g_mutex

thread_local char t_fault[1024] = "";

int32_t Result(DWORD error) { return static_cast<int32_t>(error); }

// Leaves "PATH:LINE: reason" for RegistryFault. Of a very long path the end is kept.
DWORD BadFile(const char* path, RegFault fault)
{
    constexpr size_t kPathRoom = 800;
    const size_t length = strlen(path);
    snprintf(t_fault, sizeof t_fault, "%s%.*s:%u: %s", length > kPathRoom ? "..." : "", static_cast<int>(kPathRoom),
             length > kPathRoom ? path + length - kPathRoom : path, fault.line, fault.reason);
    return ERROR_BADDB;
}

DWORD UnreadableFile(const char* path, int host_error)
{
    char reason[64];
    if (host_error == EACCES) {
        snprintf(reason, sizeof reason, "no permission to read it");
    } else {
        snprintf(reason, sizeof reason, "it cannot be read (error %d of the host)", host_error);
    }
    return BadFile(path, {0, reason});
}

// --- finding the file -----------------------------------------------------------------------------------------------

using Path = char[PATH_MAX];

// Opens `folder` and `file` joined. Returns a descriptor, or -1 with errno; `path` is what was tried.
int Open(Path& path, const char* folder, const char* file)
{
    if (snprintf(path, sizeof path, "%s%s", folder, file) >= static_cast<int>(sizeof path)) {
        errno = ENAMETOOLONG;
        return -1;
    }
    return open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
}

bool IsMissing(int descriptor) { return descriptor < 0 && (errno == ENOENT || errno == ENOTDIR); }

int OpenRegistryFile(Path& path)
{
    if (const char* named = seam::Environment("TALVEK_REGISTRY")) return Open(path, named, "");

    int descriptor = -1;
    errno = ENOENT;
    const char* settings = seam::Environment("XDG_CONFIG_HOME");
    if (settings && settings[0] == '/') {
        descriptor = Open(path, settings, "/talvek/registry.reg");
    } else if (const char* home = seam::Environment("HOME")) {
        descriptor = Open(path, home, "/.config/talvek/registry.reg");
    }
    return IsMissing(descriptor) ? Open(path, "", "/etc/talvek/registry.reg") : descriptor;
}

// --- reading it -----------------------------------------------------------------------------------------------------

// Memory of this file's own, given back at the end of its block.
struct Block {
    explicit Block(size_t size) : memory(malloc(size)) {}
    ~Block() { free(memory); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    void* memory;
};

// Reads the whole file. Returns ERROR_SUCCESS, or an error with the fault text set.
DWORD ReadWhole(int descriptor, const char* path, BYTE* octets, size_t* size)
{
    *size = 0;
    while (*size <= kLargestFile) {
        const ssize_t count = read(descriptor, octets + *size, kLargestFile + 1 - *size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return UnreadableFile(path, errno);
        if (count == 0) return ERROR_SUCCESS;
        *size += static_cast<size_t>(count);
    }
    return BadFile(path, {0, "it is larger than 4 MiB"});
}

// Collects the values of one key.
class KeyReader final : public seam::RegVisitor {
public:
    KeyReader(HKEY root, const WCHAR* path, RegistryKey* key)
        : m_root(root), m_path{path, seam::LengthOf(path)}, m_key(key)
    {
        if (m_path.length > 0 && path[m_path.length - 1] == u'\\') --m_path.length;
        m_found = m_path.length == 0; // the root itself is always there
    }

    // A key is there when a section names it or a key below it.
    bool Found() const { return m_found; }

    bool Key(HKEY root, RegText path) override
    {
        const bool begins_alike = root == m_root && path.length >= m_path.length &&
                                  seam::SameText(path.text, m_path.length, m_path.text, m_path.length);
        m_inside = begins_alike && path.length == m_path.length;
        m_found = m_found || m_inside || (begins_alike && path.text[m_path.length] == u'\\');
        return true;
    }

    bool Value(RegText name, DWORD type, const void* data, DWORD size) override
    {
        if (!m_inside) return true;
        void* block = malloc(sizeof(ValueNode) + name.length * sizeof(WCHAR) + size);
        if (!block) return false;
        auto* node = new (block) ValueNode{m_key->values, name.length, type, size};
        memcpy(node->Name(), name.text, name.length * sizeof(WCHAR));
        memcpy(node->Data(), data, size);
        m_key->values = node;
        return true;
    }

private:
    HKEY m_root;
    RegText m_path;
    RegistryKey* m_key;
    bool m_inside = false;
    bool m_found;
};

// Fills `key` from the open file. Returns ERROR_SUCCESS or an error.
DWORD LoadKey(int descriptor, const char* path, HKEY root, const WCHAR* subkey, RegistryKey* key)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0) return UnreadableFile(path, errno);
    if (!S_ISREG(status.st_mode)) return BadFile(path, {0, "it is not a plain file"});

    const Block octets(kLargestFile + 1);
    if (!octets.memory) return ERROR_NOT_ENOUGH_MEMORY;
    size_t size;
    if (const DWORD error = ReadWhole(descriptor, path, static_cast<BYTE*>(octets.memory), &size)) return error;

    const Block text((size + 1) * sizeof(WCHAR));
    if (!text.memory) return ERROR_NOT_ENOUGH_MEMORY;
    auto* const wide = static_cast<WCHAR*>(text.memory);
    size_t length;
    RegFault fault = {};
    if (!seam::DecodeRegFile(static_cast<BYTE*>(octets.memory), size, wide, &length, &fault)) {
        return BadFile(path, fault);
    }
    KeyReader reader(root, subkey, key);
    switch (seam::ParseRegText(wide, length, reader, &fault)) {
    case seam::RegResult::Malformed:
        return BadFile(path, fault);
    case seam::RegResult::Stopped:
        return ERROR_NOT_ENOUGH_MEMORY;
    case seam::RegResult::Ok:
        break;
    }
    return reader.Found() ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

void FreeKey(RegistryKey* key)
{
    while (ValueNode* node = key->values) {
        key->values = node->next;
        free(node);
    }
    free(key);
}

RegistryKey** FindOpenKey(HKEY key)
{
    for (RegistryKey** link = &g_open_keys; *link; link = &(*link)->next_open) {
        if (*link == key) return link;
    }
    return nullptr;
}

} // namespace

namespace talvek_platform {

int32_t RegOpenKeyExW(HKEY root, const WCHAR* subkey, DWORD options, DWORD access, HKEY* key)
{
    if (seam::Faulted(Call::RegOpenKeyExW)) return Result(seam::CurrentError());
    if (!key || options != 0) return Result(ERROR_INVALID_PARAMETER);
    *key = nullptr;
    if (root != HKEY_CLASSES_ROOT && root != HKEY_CURRENT_USER && root != HKEY_LOCAL_MACHINE) {
        return Result(ERROR_INVALID_HANDLE);
    }
    if (access & ~KEY_READ) return Result(ERROR_ACCESS_DENIED);

    Path path;
    const int descriptor = OpenRegistryFile(path);
    if (IsMissing(descriptor)) return Result(ERROR_FILE_NOT_FOUND);
    if (descriptor < 0) return Result(UnreadableFile(path, errno));
    void* block = malloc(sizeof(RegistryKey));
    auto* opened = block ? new (block) RegistryKey() : nullptr;
    const DWORD error =
        opened ? LoadKey(descriptor, path, root, subkey ? subkey : u"", opened) : ERROR_NOT_ENOUGH_MEMORY;
    close(descriptor);
    if (error) {
        if (opened) FreeKey(opened);
        return Result(error);
    }
    const Lock lock(g_mutex);
    opened->next_open = g_open_keys;
    g_open_keys = opened;
    *key = opened;
    return Result(ERROR_SUCCESS);
}

int32_t RegQueryValueExW(HKEY key, const WCHAR* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size)
{
    if (seam::Faulted(Call::RegQueryValueExW)) return Result(seam::CurrentError());
    if (reserved || (data && !size)) return Result(ERROR_INVALID_PARAMETER);
    if (!name) name = u"";
    const size_t name_length = seam::LengthOf(name);

    const Lock lock(g_mutex);
    RegistryKey** const link = FindOpenKey(key);
    if (!link) return Result(ERROR_INVALID_HANDLE);
    ValueNode* node = (*link)->values;
    while (node && !seam::SameText(node->Name(), node->name_length, name, name_length))
        node = node->next;
    if (!node) return Result(ERROR_FILE_NOT_FOUND);

    if (type) *type = node->type;
    const DWORD room = size ? *size : 0;
    if (size) *size = node->size;
    if (!data) return Result(ERROR_SUCCESS);
    if (node->size > room) return Result(ERROR_MORE_DATA);
    memcpy(data, node->Data(), node->size);
    return Result(ERROR_SUCCESS);
}

int32_t RegCloseKey(HKEY key)
{
    if (seam::Faulted(Call::RegCloseKey)) return Result(seam::CurrentError());
    RegistryKey* closed;
    {
        const Lock lock(g_mutex);
        RegistryKey** const link = FindOpenKey(key);
        if (!link) return Result(ERROR_INVALID_HANDLE);
        closed = *link;
        *link = closed->next_open;
    }
    FreeKey(closed);
    return Result(ERROR_SUCCESS);
}

const char* RegistryFault() { return t_fault; }

} // namespace talvek_platform
