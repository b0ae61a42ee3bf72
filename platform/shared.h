// A variable that client threads and vendor threads both touch.
//
// Each load and store is one relaxed atomic access of the machine's own width, so the code is the same as for a plain
// variable on every target (read-modify-write would call run-time support on old ARM cores: there is none here on
// purpose; updates of that kind are made under the API-wide lock).
#pragma once

template <class T>
class Shared {
public:
    constexpr Shared(T initial = T()) : m_value(initial) {}

    operator T() const { return Load(); }
    T operator=(T value)
    {
        __atomic_store_n(&m_value, value, __ATOMIC_RELAXED);
        return value;
    }
    T Load() const { return __atomic_load_n(&m_value, __ATOMIC_RELAXED); }

    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

private:
    static_assert(sizeof(T) <= sizeof(void*), "wider values would not be read in one access");
    T m_value;
};
