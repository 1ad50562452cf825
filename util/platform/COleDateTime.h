// COleDateTime: the class library's date and time, as far as TavUtil's interface uses it: an automation DATE
// (days since 30 December 1899, the time as the fraction) and a status. Its memory layout is the class
// library's: 8 bytes of date, 4 bytes of status, 4 bytes of padding (kept zero here so that stored bytes are
// reproducible).
#pragma once

#include <windows.h>
#include <oleauto.h>

class COleDateTime {
public:
    enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

    COleDateTime() = default;
    COleDateTime(DATE dateSrc) : m_dt(dateSrc) {}
    COleDateTime(int year, int month, int day, int hour, int minute, int second) {
        SetDateTime(year, month, day, hour, minute, second);
    }

    // 0 on success; an impossible date makes the status invalid.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second) {
        SYSTEMTIME st = {};
        st.wYear = static_cast<WORD>(year);
        st.wMonth = static_cast<WORD>(month);
        st.wDay = static_cast<WORD>(day);
        st.wHour = static_cast<WORD>(hour);
        st.wMinute = static_cast<WORD>(minute);
        st.wSecond = static_cast<WORD>(second);
        bool ok = month >= 1 && month <= 12 && day >= 1 && day <= 31 && hour >= 0 && hour < 24 && minute >= 0 &&
                  minute < 60 && second >= 0 && second < 60 && SystemTimeToVariantTime(&st, &m_dt);
        m_status = ok ? valid : invalid;
        if (!ok)
            m_dt = 0;
        return ok ? 0 : 1;
    }

    DateTimeStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeStatus status) { m_status = status; }

    int GetYear() const { return Fields().wYear; }
    int GetMonth() const { return Fields().wMonth; }
    int GetDay() const { return Fields().wDay; }
    int GetHour() const { return Fields().wHour; }
    int GetMinute() const { return Fields().wMinute; }
    int GetSecond() const { return Fields().wSecond; }

    bool operator==(const COleDateTime& other) const { return m_dt == other.m_dt && m_status == other.m_status; }
    bool operator!=(const COleDateTime& other) const { return !(*this == other); }

    DATE m_dt = 0;
    DateTimeStatus m_status = valid;

private:
    SYSTEMTIME Fields() const {
        SYSTEMTIME st = {};
        VariantTimeToSystemTime(m_dt, &st);
        return st;
    }
    int m_reserved = 0;
};

static_assert(sizeof(COleDateTime) == 16, "8-byte date, 4-byte status, 4 bytes of padding");
