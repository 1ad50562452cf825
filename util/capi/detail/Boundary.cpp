#include "capi/detail/Boundary.h"

#include "platform/OleException.h"

#include <cstring>
#include <new>
#include <stdexcept>

namespace tav::capi::detail {

namespace {

bool Fits(size_t units, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (needed != nullptr)
        *needed = units;
    return buffer != nullptr && units <= capacity;
}

}  // namespace

int32_t CopyText(const std::wstring& text, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (!Fits(text.size() + 1, buffer, capacity, needed))
        return TAV_E_BUFFER_TOO_SMALL;
    std::memcpy(buffer, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    return TAV_OK;
}

int32_t CopyList(const std::list<CStdStr<wchar_t>>& items, wchar_t* buffer, size_t capacity, size_t* needed) {
    std::wstring joined;
    for (const auto& item : items) {
        joined += item;
        joined += L'\0';
    }
    // CopyText adds the second NUL after the last item (the only one of an empty list: one more below).
    if (items.empty())
        joined += L'\0';
    return CopyText(joined, buffer, capacity, needed);
}

int32_t CopyTwo(const std::wstring& first, wchar_t* firstBuffer, size_t firstCapacity, size_t* firstNeeded,
                const std::wstring& second, wchar_t* secondBuffer, size_t secondCapacity, size_t* secondNeeded) {
    const bool firstFits = Fits(first.size() + 1, firstBuffer, firstCapacity, firstNeeded);
    const bool secondFits = Fits(second.size() + 1, secondBuffer, secondCapacity, secondNeeded);
    if (!firstFits || !secondFits)
        return TAV_E_BUFFER_TOO_SMALL;
    CopyText(first, firstBuffer, firstCapacity, nullptr);
    CopyText(second, secondBuffer, secondCapacity, nullptr);
    return TAV_OK;
}

int32_t CopyBytes(const void* data, size_t size, void* buffer, size_t capacity, size_t* needed) {
    if (needed != nullptr)
        *needed = size;
    if (size > capacity || (buffer == nullptr && size != 0))
        return TAV_E_BUFFER_TOO_SMALL;
    if (size != 0)
        std::memcpy(buffer, data, size);
    return TAV_OK;
}

int32_t CurrentExceptionCode() noexcept {
    try {
        throw;
    } catch (const std::out_of_range&) {
        return TAV_E_OUT_OF_RANGE;
    } catch (const std::bad_alloc&) {
        return TAV_E_OUT_OF_MEMORY;
    } catch (const CMemoryException&) {
        return TAV_E_OUT_OF_MEMORY;
    } catch (const COleException& e) {
        return static_cast<int32_t>(e.m_sc);
    } catch (...) {
        return TAV_E_EXCEPTION;
    }
}

}  // namespace tav::capi::detail
