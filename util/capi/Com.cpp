// c/com.h: automation.
#include "capi/c/com.h"

#include "capi/detail/Boundary.h"
#include "com/ComUtils.h"

#include <cstring>

using namespace tav::capi::detail;

static_assert(sizeof(tav_guid) == sizeof(GUID), "tav_guid is a GUID");

namespace {

// The host's object as the IDispatch the C++ functions take (asked for with QueryInterface).
CComQIPtr<IDispatch> Dispatch(void* object) { return CComQIPtr<IDispatch>(static_cast<IUnknown*>(object)); }

// Hands the smart pointer's reference to the caller: 1 and the pointer, or 0 and null.
template <typename Pointer> int32_t GiveOut(Pointer& pointer, void** object) {
    IUnknown* raw = pointer.p;
    if (raw != nullptr)
        raw->AddRef();
    *object = raw;
    return raw != nullptr ? 1 : 0;
}

}  // namespace

extern "C" {

int32_t tav_com_release(void* object) {
    return OnHandle(object, {}, [&] {
        static_cast<IUnknown*>(object)->Release();
        return int32_t{TAV_OK};
    });
}

int32_t tav_com_try_get_active_object(const tav_guid* clsid, void** object) {
    return OnArgs({clsid, object}, [&] {
        GUID id;
        std::memcpy(&id, clsid, sizeof id);
        IUnknown* found = nullptr;
        const long result = ComUtils::TryToGetActiveObject(id, nullptr, &found);
        *object = found;
        return int32_t{result};
    });
}

int32_t tav_com_get_active_app(const wchar_t* prog_id, void** object) {
    return OnArgs({OptionalText(prog_id), object}, [&] {
        auto found = ComUtils::GetActiveAppDispatch(prog_id);
        return GiveOut(found, object);
    });
}

int32_t tav_com_get_app_dispatch(const wchar_t* prog_id, int32_t create_if_not_running, void** object) {
    return OnArgs({OptionalText(prog_id), object}, [&] {
        auto found = ComUtils::GetAppDispatch(prog_id, Flag(create_if_not_running));
        return GiveOut(found, object);
    });
}

int32_t tav_com_create_object(const wchar_t* prog_id, void** object) {
    return OnArgs({OptionalText(prog_id), object}, [&] {
        auto made = ComUtils::CreateObject(prog_id);
        return GiveOut(made, object);
    });
}

int32_t tav_com_find_in_rot(const wchar_t* prog_id, void** object) {
    return OnArgs({OptionalText(prog_id), object}, [&] {
        auto found = ComUtils::FindInROT(prog_id);
        return GiveOut(found, object);
    });
}

int32_t tav_com_get_prop_long(void* object, const wchar_t* name, int32_t* value) {
    return OnHandle(object, {OptionalText(name), value}, [&] {
        auto dispatch = Dispatch(object);
        *value = ComUtils::GetPropLong(dispatch, name);
        return int32_t{TAV_OK};
    });
}

int32_t tav_com_get_prop_bool(void* object, const wchar_t* name, int32_t* value) {
    return OnHandle(object, {OptionalText(name), value}, [&] {
        auto dispatch = Dispatch(object);
        *value = ComUtils::GetPropBool(dispatch, name) ? 1 : 0;
        return int32_t{TAV_OK};
    });
}

int32_t tav_com_get_disp(void* object, const wchar_t* name, void** value) {
    return OnHandle(object, {OptionalText(name), value}, [&] {
        auto dispatch = Dispatch(object);
        auto property = ComUtils::GetDisp(dispatch, name);
        GiveOut(property, value);
        return int32_t{TAV_OK};
    });
}

int32_t tav_com_get_prop_string(void* object, const wchar_t* name, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(object, {OptionalText(name), Out(buffer, capacity)}, [&] {
        auto dispatch = Dispatch(object);
        return CopyText(ComUtils::GetPropW(dispatch, name), buffer, capacity, needed);
    });
}

int32_t tav_com_set_prop_bool(void* object, const wchar_t* name, int32_t value) {
    return OnHandle(object, {OptionalText(name)}, [&] {
        auto dispatch = Dispatch(object);
        return int32_t{ComUtils::SetPropBool(dispatch, name, Flag(value)) ? 1 : 0};
    });
}

int32_t tav_com_object_name(void* object, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(object, {Out(buffer, capacity)}, [&] {
        const auto dispatch = Dispatch(object);
        return CopyText(ComUtils::GetObjName(dispatch), buffer, capacity, needed);
    });
}

}  // extern "C"
