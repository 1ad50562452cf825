// The class-library stand-ins used by the settings store: geometry, font ownership, dates.
#include <TavUtil.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(PlatformTypes, GeometryHasTheWin32Layout) {
    CRect rect(10, 20, 110, 70);
    EXPECT_EQ(rect.Width(), 100);
    EXPECT_EQ(rect.Height(), 50);
    const RECT& raw = rect;
    EXPECT_EQ(raw.left, 10);
    EXPECT_EQ(raw.bottom, 70);
    EXPECT_EQ(CRect(), CRect(0, 0, 0, 0));
    EXPECT_NE(rect, CRect(10, 20, 110, 71));
    CPoint point(-3, 4);
    EXPECT_EQ(point.x, -3);
    EXPECT_EQ(point.y, 4);
    EXPECT_EQ(CPoint(), CPoint(0, 0));
    CSize size(5, -6);
    EXPECT_EQ(size.cx, 5);
    EXPECT_EQ(size.cy, -6);
    EXPECT_NE(size, CSize(5, 6));
}

TEST(PlatformTypes, FontOwnsWhatIsAttachedUntilDetached) {
    LOGFONTW lf = {};
    lf.lfHeight = -12;
    wcscpy(lf.lfFaceName, L"Tahoma");
    HGDIOBJ kept = nullptr;
    HGDIOBJ deleted = nullptr;
    {
        CFont font;
        EXPECT_EQ(font.GetSafeHandle(), nullptr);
        EXPECT_EQ(font.GetLogFont(&lf), 0);
        ASSERT_TRUE(font.CreateFontIndirect(&lf));
        LOGFONTW back = {};
        EXPECT_EQ(font.GetLogFont(&back), static_cast<int>(sizeof(back)));
        EXPECT_EQ(back.lfHeight, -12);
        kept = font.Detach();
        EXPECT_EQ(font.GetSafeHandle(), nullptr);
        EXPECT_FALSE(font.DeleteObject());
        HFONT other = CreateFontIndirectW(&lf);
        EXPECT_TRUE(font.Attach(other));
        EXPECT_FALSE(font.Attach(other));  // already holds one
        EXPECT_EQ(static_cast<HFONT>(font), other);
        deleted = other;
    }
    EXPECT_EQ(GetObjectType(deleted), 0u);  // deleted with its CFont
    EXPECT_EQ(GetObjectType(kept), static_cast<DWORD>(OBJ_FONT));
    EXPECT_TRUE(DeleteObject(kept));
}

TEST(PlatformTypes, DateTimeFromAndToComponents) {
    COleDateTime date(2024, 2, 29, 13, 45, 30);
    EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
    EXPECT_EQ(date.GetYear(), 2024);
    EXPECT_EQ(date.GetMonth(), 2);
    EXPECT_EQ(date.GetDay(), 29);
    EXPECT_EQ(date.GetHour(), 13);
    EXPECT_EQ(date.GetMinute(), 45);
    EXPECT_EQ(date.GetSecond(), 30);
    EXPECT_EQ(COleDateTime(1899, 12, 30, 0, 0, 0).m_dt, 0.0);
    EXPECT_EQ(COleDateTime(1900, 1, 1, 12, 0, 0).m_dt, 2.5);
    EXPECT_EQ(COleDateTime(2023, 13, 1, 0, 0, 0).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(COleDateTime().m_dt, 0.0);
    EXPECT_EQ(COleDateTime(3.25), COleDateTime(1900, 1, 2, 6, 0, 0));
}

TEST(PlatformTypes, DateTimeMemoryIsDateStatusAndZeroPadding) {
    COleDateTime date(2000, 1, 1, 0, 0, 0);
    date.SetStatus(COleDateTime::null);
    unsigned char bytes[16];
    std::memcpy(bytes, &date, sizeof(bytes));
    double dt;
    int status, padding;
    std::memcpy(&dt, bytes, 8);
    std::memcpy(&status, bytes + 8, 4);
    std::memcpy(&padding, bytes + 12, 4);
    EXPECT_EQ(dt, date.m_dt);
    EXPECT_EQ(status, 2);
    EXPECT_EQ(padding, 0);
}

}  // namespace
