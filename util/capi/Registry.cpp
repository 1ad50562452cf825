// c/registry.h: One open registry key.
#include "capi/c/registry.h"

#include "capi/detail/Boundary.h"
#include "registry/Registry.h"

using namespace tav::capi::detail;

struct tav_registry_t {
    CRegistry key;
};

extern "C" {

tav_registry tav_registry_create(void) {
    return GuardedHandle([]() -> tav_registry { return new tav_registry_t; });
}

void tav_registry_destroy(tav_registry key) { delete key; }

int32_t tav_registry_open(tav_registry key, tav_hkey root, const wchar_t* path, int32_t read_only) {
    return OnHandle(key, {path}, [&]() -> int32_t {
        const bool readOnly = Flag(read_only);
        return key->key.OpenKey(HkeyOf(root), path, readOnly);
    });
}

int32_t tav_registry_close(tav_registry key) {
    return OnHandle(key, {}, [&]() -> int32_t { return key->key.CloseKey(); });
}

int32_t tav_registry_is_valid(tav_registry key) {
    return OnHandle(key, {}, [&]() -> int32_t { return key->key.IsValid() ? 1 : 0; });
}

int32_t tav_registry_read_string(tav_registry key, const wchar_t* name, wchar_t* buffer, size_t capacity,
                                 size_t* needed) {
    return OnHandle(key, {name, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> text;
        const long status = key->key.ReadStringValue(name, text);
        return WithText(status, CopyText(text, buffer, capacity, needed));
    });
}

int32_t tav_registry_write_string(tav_registry key, const wchar_t* name, const wchar_t* value) {
    return OnHandle(key, {name, value}, [&]() -> int32_t { return key->key.WriteStringValue(name, value); });
}

int32_t tav_registry_query_value(tav_registry key, const wchar_t* name, uint32_t* type, void* data, uint32_t* size) {
    return OnHandle(key, {name}, [&]() -> int32_t {
        static_assert(sizeof(unsigned long) == sizeof(uint32_t), "Windows' unsigned long is 32 bits");
        return key->key.QueryValueEx(name, reinterpret_cast<unsigned long*>(type), static_cast<unsigned char*>(data),
                                     reinterpret_cast<unsigned long*>(size));
    });
}

int32_t tav_registry_set_value(tav_registry key, const wchar_t* name, uint32_t type, const void* data, uint32_t size) {
    return OnHandle(key, {name}, [&]() -> int32_t {
        if (data == nullptr && size != 0)
            return TAV_E_NULL_ARGUMENT;
        return key->key.SetValueEx(name, type, static_cast<const wchar_t*>(data), static_cast<long>(size));
    });
}

int32_t tav_registry_delete_value(tav_registry key, const wchar_t* name) {
    return OnHandle(key, {name}, [&]() -> int32_t { return key->key.DeleteValue(name); });
}

int32_t tav_registry_delete_key(tav_registry key, const wchar_t* subkey) {
    return OnHandle(key, {subkey}, [&]() -> int32_t { return key->key.DeleteKey(subkey); });
}

int32_t tav_registry_subkeys(tav_registry key, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(key, {Out(buffer, capacity)}, [&]() -> int32_t {
        std::list<CStdStr<wchar_t>> names;
        for (const wchar_t* name = key->key.GetFirstSubkey(); name != nullptr; name = key->key.GetNextSubkey())
            names.emplace_back(name);
        return WithText(static_cast<int32_t>(names.size()), CopyList(names, buffer, capacity, needed));
    });
}

}  // extern "C"
