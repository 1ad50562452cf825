// Automation operations, on the in-process objects the system has (VBScript.RegExp, Scripting.Dictionary).
// Every failure of an Automation call ends the operation quietly with its neutral answer (a null object, 0,
// false, an empty text); a name that cannot be copied into a BSTR is the memory exception, TAV_E_OUT_OF_MEMORY
// through the C interface.
#include "Faults.h"

#include "capi/TavUtilC.h"

#include <objbase.h>

namespace faults {

namespace {

Operation Op(const char* name, std::function<Answer()> run, std::vector<Answer> neutral, unsigned allow = 0) {
    return Operation{"com", name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
}

// The C result, with a found object as 1 (released at once) and a failed HRESULT as one answer.
Answer Found(int32_t status, void* object) {
    if (object != nullptr)
        tav_com_release(object);
    if (status < -100)
        return {-100, L"failed HRESULT"};
    return {status, object != nullptr ? L"object" : L"null"};
}

// A RegExp object of the test's own making, for the property calls.
Answer WithRegExp(const std::function<Answer(void*)>& body) {
    CLSID clsid;
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(L"VBScript.RegExp", &clsid)) ||
        FAILED(
            CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object))))
        return {-2000, L"no RegExp object in this system"};
    Answer answer = body(object);
    object->Release();
    return answer;
}

}  // namespace

void AddComOperations(std::vector<Operation>& out) {
    out.push_back(Op("create_object",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_create_object(L"Scripting.Dictionary", &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    out.push_back(Op("get_app_dispatch",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_get_app_dispatch(L"Scripting.Dictionary", 1, &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    out.push_back(Op("get_active_app",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_get_active_app(L"Scripting.Dictionary", &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    out.push_back(Op("find_in_rot",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_find_in_rot(L"Scripting.Dictionary", &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    // The HRESULT of the last GetActiveObject is passed on: any failed HRESULT with no object.
    out.push_back(Op("try_get_active_object",
                     [] {
                         const tav_guid clsid = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
                         void* object = nullptr;
                         const int32_t status = tav_com_try_get_active_object(&clsid, &object);
                         return Found(status, object);
                     },
                     {{-100, L"failed HRESULT"}}));
    out.push_back(Op("get_prop_string",
                     [] {
                         return WithRegExp([](void* object) {
                             return TextResult([object](wchar_t* b, size_t c, size_t* n) {
                                 return tav_com_get_prop_string(object, L"Pattern", b, c, n);
                             });
                         });
                     },
                     {{0, L""}}));
    out.push_back(Op("get_prop_bool",
                     [] {
                         return WithRegExp([](void* object) {
                             int32_t value = 7;
                             const int32_t status = tav_com_get_prop_bool(object, L"IgnoreCase", &value);
                             return Answer{status, std::to_wstring(value)};
                         });
                     },
                     {{0, L"0"}}));
    out.push_back(
        Op("set_prop_bool",
           [] {
               return WithRegExp([](void* object) { return Answer{tav_com_set_prop_bool(object, L"Global", 1), L""}; });
           },
           {{0, L""}}));
    out.push_back(Op("get_disp",
                     [] {
                         return WithRegExp([](void* object) {
                             void* value = nullptr;
                             const int32_t status = tav_com_get_disp(object, L"Pattern", &value);
                             return Found(status, value);
                         });
                     },
                     {{0, L"null"}}));
    out.push_back(Op("object_name",
                     [] {
                         return WithRegExp([](void* object) {
                             return TextResult([object](wchar_t* b, size_t c, size_t* n) {
                                 return tav_com_object_name(object, b, c, n);
                             });
                         });
                     },
                     {{0, L""}}));
}

}  // namespace faults
