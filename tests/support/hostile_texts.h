#pragma once
// Inputs that no launcher writes and every reader meets: damaged, foreign and huge ones.

#include <cstddef>
#include <istream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::tests {

// 50 MB where the readers are built natively. The same tests under Wine get a tenth, so that the whole run
// stays short.
#ifdef _WIN32
inline constexpr size_t kHuge = size_t{5} << 20;
#else
inline constexpr size_t kHuge = size_t{50} << 20;
#endif

// `pattern` again and again, cut at exactly `size` bytes.
inline std::string Repeated(const std::string& pattern, size_t size) {
  std::string text;
  text.reserve(size + pattern.size());
  while (text.size() < size) text += pattern;
  text.resize(size);
  return text;
}

// A huge text of one byte; of a longer pattern less, but enough for anything that is not linear in its size
// to be felt.
inline std::string Enormous(const std::string& pattern) {
  return Repeated(pattern, pattern.size() == 1 ? kHuge : kHuge / 10);
}

// An ASCII text as UTF-16 with a byte-order mark, the way an editor may save it.
inline std::string AsUtf16(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char byte : ascii) bytes.append({byte, '\0'});
  return bytes;
}

// Texts that hold nothing for any reader: empty, of one byte, without meaning, of another encoding.
inline std::vector<std::string> MeaninglessTexts(const std::string& good) {
  return {"",
          "\n",
          "{",
          "}",
          "\"",
          ":",
          std::string(1, '\0'),
          std::string(4096, '\0'),
          "\r\n\r\n",
          "\xEF\xBB\xBF",
          std::string("\x7F\x45\x4C\x46\x00\xFF\xFE\x80", 8),
          AsUtf16(good),
          Repeated("\"", 5000),
          Repeated("{", 5000),
          Repeated("}", 5000),
          Repeated("{\"}\"", 5000),
          Repeated("\\", 5000),
          Repeated(":", 5000)};
}

// A stream that gives a text and then throws, as reading does when its disk is taken away.
class BrokenStream : private std::streambuf, public std::istream {
 public:
  explicit BrokenStream(std::string text) : std::istream(nullptr), text_(std::move(text)) {
    setg(text_.data(), text_.data(), text_.data() + text_.size());
    rdbuf(this);
    exceptions(std::ios::badbit);
  }

 private:
  std::streambuf::int_type underflow() override { throw std::runtime_error("the disk is gone"); }

  std::string text_;
};

}  // namespace tarnwick::tests
