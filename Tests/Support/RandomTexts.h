#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// Texts of a seed, and what somebody may have made of them: few different lines, so that many are alike; every line
/// end; no lines at all; an open last line; bytes that are no text; UTF-16; now and then more than a comparison reads
/// at a time.
class RandomTexts
{
  public:
    explicit RandomTexts(std::uint32_t seed) : _random{seed} {}

    std::vector<std::string> lines()
    {
        _ends = pick<std::vector<std::string>>({{"\n"}, {"\n"}, {"\r\n"}, {"\r"}, {"\n", "\r\n", "\r"}});
        _isWide = chance(10);
        _isLong = chance(40);
        std::vector<std::string> lines;
        for (auto count = chance(8) ? 0 : _random() % 40; count > 0; --count) {
            lines.push_back(line());
        }
        return lines;
    }
    std::vector<std::string> changed(std::vector<std::string> lines)
    {
        std::vector<std::string> result;
        for (auto& old : lines) {
            if (chance(10)) {
                result.push_back(line());
            }
            if (!chance(8)) {
                result.push_back(chance(8) ? line() : std::move(old));
            }
        }
        return chance(20) ? std::vector<std::string>{} : result;
    }
    /// The lines as the bytes of a file.
    std::string text(const std::vector<std::string>& lines)
    {
        std::string text;
        for (const auto& each : lines) {
            text += each;
        }
        if (chance(4) && !text.empty()) {
            text.erase(text.find_last_not_of("\r\n") + 1); // the last line, or several empty ones, loses its end
        }
        if (_isWide) {
            std::string wide{"\xff\xfe"};
            for (const char byte : text) {
                wide.append({byte, '\0'});
            }
            return wide;
        }
        return text;
    }

  private:
    bool chance(std::uint32_t outOf) { return _random() % outOf == 0; }
    template <class Value>
    Value pick(const std::vector<Value>& values)
    {
        return values[_random() % values.size()];
    }
    std::string line()
    {
        const auto word =
            pick<std::string>({"", "a", "b", "c", "d e", "{", "}", " }", "\tx", std::string("\0\xfe", 2)});
        return (_isLong ? std::string(9000, 'z') : std::string{}) + word + pick(_ends);
    }

    std::mt19937 _random;
    std::vector<std::string> _ends{"\n"};
    bool _isWide = false;
    bool _isLong = false;
};
