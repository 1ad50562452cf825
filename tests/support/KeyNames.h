// The tests' own table of the key names of the script language and the virtual-key codes they stand for,
// written out here once and independently of the library's table, so that the tests check the library
// against a reference rather than against itself.
#pragma once

#include <windows.h>

#include <cstddef>

namespace tavtest {

struct KeyNameRow {
    const wchar_t* name;
    WORD code;  // 0xFFFF: QUEUESYNC, a name that puts nothing in the queue
};

// Every name, in the order of the language's table (BREAK included).
inline constexpr KeyNameRow kKeyNames[] = {
    {L"QUEUESYNC", 0xFFFF}, {L"CAPSLOCK", 0x14}, {L"NUMLOCK", 0x90},   {L"SCROLLOCK", 0x91}, {L"ESCAPE", 0x1B},
    {L"ESC", 0x1B},         {L"ENTER", 0x0D},    {L"HELP", 0x2F},      {L"PRTSC", 0x2C},     {L"TAB", 0x09},
    {L"BREAK", 0x11},       {L"CLEAR", 0x0C},    {L"BACKSPACE", 0x08}, {L"BS", 0x08},        {L"BKSP", 0x08},
    {L"DELETE", 0x2E},      {L"DEL", 0x2E},      {L"INSERT", 0x2D},    {L"LEFT", 0x25},      {L"RIGHT", 0x27},
    {L"UP", 0x26},          {L"DOWN", 0x28},     {L"PGUP", 0x21},      {L"PGDN", 0x22},      {L"HOME", 0x24},
    {L"END", 0x23},         {L"F1", 0x70},       {L"F2", 0x71},        {L"F3", 0x72},        {L"F4", 0x73},
    {L"F5", 0x74},          {L"F6", 0x75},       {L"F7", 0x76},        {L"F8", 0x77},        {L"F9", 0x78},
    {L"F10", 0x79},         {L"F11", 0x7A},      {L"F12", 0x7B},       {L"F13", 0x7C},       {L"F14", 0x7D},
    {L"F15", 0x7E},         {L"F16", 0x7F},      {L"SLEEP", 0x5F},
};
inline constexpr size_t kKeyNameCount = sizeof kKeyNames / sizeof kKeyNames[0];

}  // namespace tavtest
