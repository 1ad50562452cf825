#include "Models.h"

#include "KeyNames.h"

#include <cwchar>
#include <cwctype>

namespace fuzz::model {

namespace {

bool IsCutSeparator(wchar_t ch) { return ch == L' ' || ch == L'\n' || ch == L'\r'; }

}  // namespace

std::list<Text> StringCut(const Text& text, int width) {
    std::list<Text> pieces;
    // The remainder always runs to the text's end, so its trailing separators are the text's own.
    size_t end = text.size();
    while (end > 0 && IsCutSeparator(text[end - 1]))
        --end;
    size_t pos = 0;
    for (;;) {
        while (pos < end && IsCutSeparator(text[pos]))
            ++pos;
        long long length = static_cast<long long>(end) - static_cast<long long>(pos);
        if (length <= width) {
            pieces.push_back(pos < end ? text.substr(pos, end - pos) : Text());
            return pieces;
        }
        size_t first = pos;
        while (first < end && !IsCutSeparator(text[first]))
            ++first;
        bool hasSeparator = first < end;
        if (hasSeparator && static_cast<long long>(first - pos) <= width) {
            size_t last = pos + static_cast<size_t>(width);  // the last of the first width + 1 units
            while (!IsCutSeparator(text[last]))
                --last;
            pieces.push_back(text.substr(pos, last - pos));
            pos = last;
        } else {
            long long keep = static_cast<long long>(width) - 3;
            pieces.push_back(text.substr(pos, keep < 0 ? 0 : static_cast<size_t>(keep)) + L"...");
            if (!hasSeparator)
                return pieces;
            pos = first;
        }
    }
}

std::optional<Version> ParseVersion(const Text& text) {
    Version version;
    int index = 0;
    size_t pos = 0;
    while (index < 4) {
        while (pos < text.size() && text[pos] == L'.')
            ++pos;
        if (pos >= text.size())
            break;
        size_t end = text.find(L'.', pos);
        Text token = text.substr(pos, end == Text::npos ? Text::npos : end - pos);
        pos = end == Text::npos ? text.size() : end;
        // Decimal conversion: leading white space, one sign, digits up to the first other unit.
        // The platform's conversion knows white space and digits beyond ASCII; the rules do not say which.
        for (wchar_t ch : token)
            if (ch >= 0x80)
                return std::nullopt;
        size_t i = 0;
        while (i < token.size() && iswspace(token[i]))
            ++i;
        bool negative = false;
        if (i < token.size() && (token[i] == L'+' || token[i] == L'-'))
            negative = token[i++] == L'-';
        while (i < token.size() && token[i] == L'0')
            ++i;
        long long value = 0;
        int digits = 0;
        for (; i < token.size() && token[i] >= L'0' && token[i] <= L'9'; ++i, ++digits)
            if (digits < 10)  // more digits leave the model's ground below: no need to add them up
                value = value * 10 + (token[i] - L'0');
        if (digits > 9)
            return std::nullopt;  // what the conversion does past the integer's range is not ours to say
        if (negative)
            value = -value;
        version.part[index++] = static_cast<unsigned short>(static_cast<unsigned long long>(value) & 0xFFFF);
        version.valid = 1;
    }
    return version;
}

int CompareVersions(const Version& a, const Version& b) {
    const unsigned short* x = a.part;
    const unsigned short* y = b.part;
    if (x[0] > y[0])
        return 5;
    if (x[0] == y[0]) {
        if (x[1] > y[1])
            return 4;
        if (x[1] == y[1]) {
            if (x[2] > y[2])
                return 3;
            if (x[2] == y[2] && x[3] > y[3])
                return 2;
        }
    }
    if (x[0] < y[0] || x[1] < y[1] || x[2] < y[2])
        return 0;
    return x[3] == y[3] ? 1 : 0;
}

std::optional<Text> StripTrailingArgument(const Text& line) {
    size_t quote = line.size() > 1 ? line.find(L'"', 1) : Text::npos;
    if (quote != Text::npos)
        return line.substr(1, quote - 1);
    for (size_t blank = line.find(L' '); blank != Text::npos; blank = line.find(L' ', blank + 1)) {
        if (blank < 4)
            return std::nullopt;
        Text ending = line.substr(blank - 4, 4);
        if (ending == L".exe" || ending == L".EXE")
            return line.substr(0, blank);
    }
    return line;
}

Parts Split(const Text& path) {
    Parts parts;
    size_t start = 0;
    if (path.size() >= 2 && path[1] == L':') {
        parts.drive = path.substr(0, 2);
        start = 2;
    }
    size_t nameStart = start;
    size_t separator = path.find_last_of(L"\\/");
    if (separator != Text::npos && separator >= start) {
        parts.dir = path.substr(start, separator + 1 - start);
        nameStart = separator + 1;
    }
    size_t dot = path.rfind(L'.');
    if (dot != Text::npos && dot >= nameStart) {
        parts.file = path.substr(nameStart, dot - nameStart);
        parts.ext = path.substr(dot);
    } else {
        parts.file = path.substr(nameStart);
    }
    if (parts.drive.size() >= 3 || parts.dir.size() >= 256 || parts.file.size() >= 256 || parts.ext.size() >= 256)
        return Parts{{}, {}, {}, {}, false};
    return parts;
}

Text Compose(const Text& drive, const Text& dir, const Text& file, const Text& ext) {
    Text out;
    if (!drive.empty()) {
        out += drive;
        if (out.size() == 1)
            out += L':';
    }
    if (!dir.empty()) {
        out += dir;
        if (out.back() != L'\\' && out.back() != L'/')
            out += L'\\';
    }
    out += file;
    if (!ext.empty()) {
        if (ext[0] != L'.')
            out += L'.';
        out += ext;
    }
    return out.size() < 260 ? out : Text();
}

Text Expand(const Text& text) {
    wchar_t buffer[512];
    DWORD count = ExpandEnvironmentStringsW(text.c_str(), buffer, 512);
    return count == 0 || count > 512 ? text : Text(buffer);
}

Extracted ExtractProgram(const Text& line, const std::function<bool(const Text&)>& exists) {
    if (line.empty())
        return {false, {}, {}};
    Text copy = Expand(line);
    if (!copy.empty() && copy[0] == L'"')
        copy.erase(0, 1);
    auto withoutClosingQuote = [](Text text) {
        if (!text.empty() && text.back() == L'"')
            text.pop_back();
        return text;
    };
    for (size_t blank = copy.find(L' '); blank != Text::npos && blank >= 1; blank = copy.find(L' ', blank + 1)) {
        Text candidate = withoutClosingQuote(copy.substr(0, blank));
        if (exists(candidate))
            return {true, candidate, copy.substr(blank)};
    }
    return {true, withoutClosingQuote(copy), Text()};
}

Text Escape(const Text& text) {
    Text out;
    for (wchar_t ch : text) {
        if (ch != 0 && Text(L"%()*+[]^{}~").find(ch) != Text::npos)
            out += Text(L"{") + ch + L"}";
        else
            out += ch;
    }
    return out;
}

// ---- the key queue ----------------------------------------------------------------------------------

namespace {

struct OutOfGround {};  // the script left the ground the model covers

class ScriptModel {
public:
    explicit ScriptModel(const Text& script) : s_(script) {}

    Queue Parse() {
        Queue queue;
        q_ = &queue.entries;
        while (at() != 0)
            if (int e = Item(0)) {
                queue.result = e;
                return queue;
            }
        return queue;
    }

private:
    wchar_t at() const { return i_ < s_.size() ? s_[i_] : 0; }

    int Append(WORD entry) {
        if (q_->size() >= 6144)
            return 5;
        q_->push_back(entry);
        return 0;
    }

    int Item(int depth) {
        if (depth > 4000)
            throw OutOfGround{};
        wchar_t ch = at();
        ++i_;
        switch (ch) {
        case 0: --i_; return 0;
        case L'+': return Modified(0x10, depth);
        case L'^': return Modified(0x11, depth);
        case L'%': return Modified(0x12, depth);
        case L'*': return Modified(0x5B, depth);
        case L'(': return Group(depth);
        case L'[': return Append(0xFFFE);
        case L']': return Append(0xFFFD);
        case L'~': return Append(0x0D);
        case L'{': return Brace();
        default: return Key(static_cast<WORD>(VkKeyScanW(ch)), 1);
        }
    }

    int Modified(WORD code, int depth) {
        if (int e = Append(code))
            return e;
        if (int e = Item(depth + 1))
            return e;
        return Append(code);
    }

    int Group(int depth) {
        if (at() == 0)
            return 3;
        for (;;) {
            if (at() == L')') {
                ++i_;
                return 0;
            }
            if (int e = Item(depth + 1)) {
                if (at() == 0)
                    return 3;
                ++i_;
                return e;
            }
            if (at() == 0)
                return 3;
        }
    }

    int Brace() {
        WORD key = 0;
        bool closing = at() == L'}';
        if (closing) {
            key = static_cast<WORD>(VkKeyScanW(L'}'));
            ++i_;
        }
        size_t delimiter = s_.find_first_of(L" }", i_);
        if (delimiter == Text::npos)
            return 1;
        if (!closing) {
            Text name = s_.substr(i_, delimiter - i_);
            key = 0;
            for (const tavtest::KeyNameRow& row : tavtest::kKeyNames)
                if (_wcsicmp(row.name, name.c_str()) == 0)
                    key = row.code;
            if (key == 0 && name.size() == 1)
                key = static_cast<WORD>(VkKeyScanW(name[0]));
            if (key == 0)
                return 2;
        }
        long long count = 1;
        if (s_[delimiter] == L' ') {
            size_t p = delimiter;
            while (p < s_.size() && iswspace(s_[p]))
                ++p;
            if (p < s_.size() && s_[p] >= 0x80)
                throw OutOfGround{};  // white space beyond ASCII: the platform's reader decides
            bool negative = false;
            if (p < s_.size() && (s_[p] == L'+' || s_[p] == L'-'))
                negative = s_[p++] == L'-';
            int digits = 0;
            long long value = 0;
            for (; p < s_.size() && s_[p] >= L'0' && s_[p] <= L'9'; ++p, ++digits)
                if (digits < 10)  // more digits leave the model's ground below: no need to add them up
                    value = value * 10 + (s_[p] - L'0');
            if (digits > 9)
                throw OutOfGround{};
            if (digits == 0 || value == 0)
                return 4;
            count = negative ? -value : value;
        }
        size_t close = s_.find(L'}', delimiter);
        if (close == Text::npos)
            return 1;
        i_ = close + 1;
        if (key == 0xFFFF)
            return 0;
        return Key(key, count);
    }

    int Key(WORD code, long long count) {
        BYTE shift = HIBYTE(code);
        const WORD modifiers[] = {0x10, 0x11, 0x12};
        for (int bit = 0; bit < 3; ++bit)
            if (shift & (1 << bit))
                if (int e = Append(modifiers[bit]))
                    return e;
        for (long long n = count; n != 0; --n)
            if (int e = Append(LOBYTE(code)))
                return e;
        for (int bit = 0; bit < 3; ++bit)
            if (shift & (1 << bit))
                if (int e = Append(modifiers[bit]))
                    return e;
        return 0;
    }

    const Text& s_;
    size_t i_ = 0;
    std::vector<WORD>* q_ = nullptr;
};

}  // namespace

std::optional<Queue> ParseScript(const Text& script) {
    try {
        return ScriptModel(script).Parse();
    } catch (const OutOfGround&) {
        return std::nullopt;
    }
}

}  // namespace fuzz::model
