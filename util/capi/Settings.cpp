// c/settings.h: Typed application settings under one registry key.
#include "capi/c/settings.h"

#include "capi/detail/Boundary.h"
#include "registry/RegistryClass.h"

#include <cstring>

using namespace tav::capi::detail;

struct tav_settings_t {
    CRegistryClass settings;
};

static_assert(sizeof(tav_logfont) == sizeof(LOGFONTW), "tav_logfont is a LOGFONTW");
static_assert(sizeof(tav_date_time) == sizeof(COleDateTime), "tav_date_time is a COleDateTime");
static_assert(sizeof(tav_rect) == sizeof(RECT) && sizeof(tav_point) == sizeof(POINT) &&
                  sizeof(tav_size) == sizeof(SIZE),
              "the geometry records are the Win32 structures");

namespace {

// The geometry reads start from the caller's record, as the C++ reads do: a stored value shorter than the
// record replaces only its first bytes and leaves the rest as the caller had it.
template <typename Record, typename Object> void CopyRecord(const Object& from, Record* to) {
    std::memcpy(to, &from, sizeof(Record));
}

}  // namespace

extern "C" {

tav_settings tav_settings_create(void) {
    return GuardedHandle([]() -> tav_settings { return new tav_settings_t; });
}

void tav_settings_destroy(tav_settings settings) { delete settings; }

int32_t tav_settings_set_root(tav_settings settings, tav_hkey root) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.SetRootKey(HkeyOf(root)); });
}

int32_t tav_settings_get_root(tav_settings settings, tav_hkey* root) {
    return OnHandle(settings, {root}, [&]() -> int32_t {
        *root = settings->settings.GetRootKey();
        return TAV_OK;
    });
}

int32_t tav_settings_create_key(tav_settings settings, const wchar_t* path) {
    return OnHandle(settings, {path}, [&]() -> int32_t { return settings->settings.CreateKey(path); });
}

int32_t tav_settings_set_key(tav_settings settings, const wchar_t* path, int32_t can_create) {
    return OnHandle(settings, {path}, [&]() -> int32_t { return settings->settings.SetKey(path, can_create); });
}

int32_t tav_settings_clear_key(tav_settings settings) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.ClearKey(); });
}

int32_t tav_settings_path_is_valid(tav_settings settings) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.PathIsValid(); });
}

int32_t tav_settings_current_path(tav_settings settings, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(settings, {Out(buffer, capacity)}, [&]() -> int32_t {
        return CopyText(settings->settings.GetCurrentPath().GetString(), buffer, capacity, needed);
    });
}

int32_t tav_settings_key_exists(tav_settings settings, const wchar_t* path, tav_hkey root) {
    return OnHandle(settings, {path}, [&]() -> int32_t { return settings->settings.KeyExists(path, HkeyOf(root)); });
}

int32_t tav_settings_delete_key(tav_settings settings, const wchar_t* path) {
    return OnHandle(settings, {path}, [&]() -> int32_t { return settings->settings.DeleteKey(path); });
}

int32_t tav_settings_delete_value(tav_settings settings, const wchar_t* name) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.DeleteValue(name); });
}

int32_t tav_settings_value_exists(tav_settings settings, const wchar_t* name) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.ValueExists(name); });
}

int32_t tav_settings_data_size(tav_settings settings, const wchar_t* name) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.GetDataSize(name); });
}

int32_t tav_settings_data_type(tav_settings settings, const wchar_t* name) {
    return OnHandle(settings, {name},
                    [&]() -> int32_t { return static_cast<int32_t>(settings->settings.GetDataType(name)); });
}

int32_t tav_settings_subkey_count(tav_settings settings) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.GetSubKeyCount(); });
}

int32_t tav_settings_value_count(tav_settings settings) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.GetValueCount(); });
}

int32_t tav_settings_subkey_name(tav_settings settings, int32_t index, wchar_t* buffer, size_t capacity,
                                 size_t* needed) {
    return OnHandle(settings, {Out(buffer, capacity)}, [&]() -> int32_t {
        CString name;
        const int found = settings->settings.GetSubKeyName(index, name);
        return WithText(found, CopyText(found ? name.GetString() : L"", buffer, capacity, needed));
    });
}

int32_t tav_settings_rename_value(tav_settings settings, const wchar_t* from, const wchar_t* to) {
    return OnHandle(settings, {from, to}, [&]() -> int32_t {
        settings->settings.RenameValue(from, to);
        return TAV_OK;
    });
}

int32_t tav_settings_set_lazy_write(tav_settings settings, int32_t lazy_write) {
    return OnHandle(settings, {}, [&]() -> int32_t {
        settings->settings.SetLazyWrite(lazy_write);
        return TAV_OK;
    });
}

int32_t tav_settings_lazy_write(tav_settings settings) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.GetLazyWrite(); });
}

int32_t tav_settings_last_status(tav_settings settings) {
    return OnHandle(settings, {}, [&]() -> int32_t { return settings->settings.GetLastStatus(); });
}

int32_t tav_settings_read_string(tav_settings settings, const wchar_t* name, const wchar_t* def, wchar_t* buffer,
                                 size_t capacity, size_t* needed) {
    return OnHandle(settings, {name, def, Out(buffer, capacity)}, [&]() -> int32_t {
        return CopyText(settings->settings.ReadString(name, def).GetString(), buffer, capacity, needed);
    });
}

int32_t tav_settings_read_dword(tav_settings settings, const wchar_t* name, uint32_t def, uint32_t* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t {
        *value = settings->settings.ReadDword(name, def);
        return TAV_OK;
    });
}

int32_t tav_settings_read_int(tav_settings settings, const wchar_t* name, int32_t def, int32_t* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t {
        *value = settings->settings.ReadInt(name, def);
        return TAV_OK;
    });
}

int32_t tav_settings_read_bool(tav_settings settings, const wchar_t* name, int32_t def, int32_t* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t {
        *value = settings->settings.ReadBool(name, def);
        return TAV_OK;
    });
}

int32_t tav_settings_read_color(tav_settings settings, const wchar_t* name, uint32_t def, uint32_t* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t {
        *value = settings->settings.ReadColor(name, def);
        return TAV_OK;
    });
}

int32_t tav_settings_read_float(tav_settings settings, const wchar_t* name, double def, double* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t {
        *value = settings->settings.ReadFloat(name, def);
        return TAV_OK;
    });
}

int32_t tav_settings_read_date_time(tav_settings settings, const wchar_t* name, const tav_date_time* def,
                                    tav_date_time* value) {
    return OnHandle(settings, {name, def, value}, [&]() -> int32_t {
        COleDateTime fallback;
        std::memcpy(static_cast<void*>(&fallback), def, sizeof fallback);
        CopyRecord(settings->settings.ReadDateTime(name, fallback), value);
        return TAV_OK;
    });
}

int32_t tav_settings_read_binary(tav_settings settings, const wchar_t* name, void* data, uint32_t size) {
    return OnHandle(settings, {name, data}, [&]() -> int32_t {
        return settings->settings.ReadBinary(name, static_cast<unsigned char*>(data), size);
    });
}

int32_t tav_settings_read_rect(tav_settings settings, const wchar_t* name, tav_rect* rect) {
    return OnHandle(settings, {name, rect}, [&]() -> int32_t {
        CRect read(rect->left, rect->top, rect->right, rect->bottom);
        const int ok = settings->settings.ReadRect(name, &read);
        CopyRecord(read, rect);
        return ok;
    });
}

int32_t tav_settings_read_point(tav_settings settings, const wchar_t* name, tav_point* point) {
    return OnHandle(settings, {name, point}, [&]() -> int32_t {
        CPoint read(point->x, point->y);
        const int ok = settings->settings.ReadPoint(name, &read);
        CopyRecord(read, point);
        return ok;
    });
}

int32_t tav_settings_read_size(tav_settings settings, const wchar_t* name, tav_size* size) {
    return OnHandle(settings, {name, size}, [&]() -> int32_t {
        CSize read(size->cx, size->cy);
        const int ok = settings->settings.ReadSize(name, &read);
        CopyRecord(read, size);
        return ok;
    });
}

int32_t tav_settings_read_font(tav_settings settings, const wchar_t* name, tav_logfont* font) {
    return OnHandle(settings, {name, font}, [&]() -> int32_t {
        CFont read;
        LOGFONTW description = {};
        const int ok = settings->settings.ReadFont(name, &read) && read.GetLogFont(&description);
        if (ok)
            CopyRecord(description, font);
        return ok ? 1 : 0;
    });
}

int32_t tav_settings_write_string(tav_settings settings, const wchar_t* name, const wchar_t* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t { return settings->settings.WriteString(name, value); });
}

int32_t tav_settings_write_dword(tav_settings settings, const wchar_t* name, uint32_t value) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.WriteDword(name, value); });
}

int32_t tav_settings_write_int(tav_settings settings, const wchar_t* name, int32_t value) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.WriteInt(name, value); });
}

int32_t tav_settings_write_bool(tav_settings settings, const wchar_t* name, int32_t value) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.WriteBool(name, value); });
}

int32_t tav_settings_write_color(tav_settings settings, const wchar_t* name, uint32_t value) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.WriteColor(name, value); });
}

int32_t tav_settings_write_float(tav_settings settings, const wchar_t* name, double value) {
    return OnHandle(settings, {name}, [&]() -> int32_t { return settings->settings.WriteFloat(name, value); });
}

int32_t tav_settings_write_date_time(tav_settings settings, const wchar_t* name, const tav_date_time* value) {
    return OnHandle(settings, {name, value}, [&]() -> int32_t {
        COleDateTime written;
        std::memcpy(static_cast<void*>(&written), value, sizeof written);
        return settings->settings.WriteDateTime(name, written);
    });
}

int32_t tav_settings_write_rect(tav_settings settings, const wchar_t* name, const tav_rect* rect) {
    return OnHandle(settings, {name, rect}, [&]() -> int32_t {
        CRect written(rect->left, rect->top, rect->right, rect->bottom);
        return settings->settings.WriteRect(name, &written);
    });
}

int32_t tav_settings_write_point(tav_settings settings, const wchar_t* name, const tav_point* point) {
    return OnHandle(settings, {name, point}, [&]() -> int32_t {
        CPoint written(point->x, point->y);
        return settings->settings.WritePoint(name, &written);
    });
}

int32_t tav_settings_write_size(tav_settings settings, const wchar_t* name, const tav_size* size) {
    return OnHandle(settings, {name, size}, [&]() -> int32_t {
        CSize written(size->cx, size->cy);
        return settings->settings.WriteSize(name, &written);
    });
}

int32_t tav_settings_write_font(tav_settings settings, const wchar_t* name, const tav_logfont* font) {
    return OnHandle(settings, {name, font}, [&]() -> int32_t {
        LOGFONTW description;
        std::memcpy(&description, font, sizeof description);
        CFont written;
        if (!written.CreateFontIndirect(&description))
            return 0;
        return settings->settings.WriteFont(name, &written);
    });
}

}  // extern "C"
