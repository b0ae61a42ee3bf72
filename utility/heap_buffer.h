// A block of the process heap that is freed at the end of its scope, unless it is handed over: to a client, who frees
// it with OrvFreeBuffer.
#pragma once

#include <string.h>

#include "platform/win32.h"

class HeapBuffer {
public:
    // `size` octets, all 0. A block that cannot be had is null.
    explicit HeapBuffer(SIZE_T size)
    {
        m_block = HeapAlloc(GetProcessHeap(), 0, size ? size : 1);
        if (m_block) memset(m_block, 0, size);
    }
    ~HeapBuffer() { Free(m_block); }
    HeapBuffer(const HeapBuffer&) = delete;
    HeapBuffer& operator=(const HeapBuffer&) = delete;

    template <class T>
    T* As() const
    {
        return static_cast<T*>(m_block);
    }
    // The caller's from now on.
    template <class T>
    T* Release()
    {
        T* const block = As<T>();
        m_block = nullptr;
        return block;
    }
    static void Free(void* block)
    {
        if (block) HeapFree(GetProcessHeap(), 0, block);
    }

private:
    void* m_block;
};
