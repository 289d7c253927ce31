#ifndef XSTR_VIEWS_H_
#define XSTR_VIEWS_H_

// The allocation-free forms behind xstr.h, for the inner loops of this project. Not installed.

#include <cstddef>
#include <string_view>

namespace qeo::xstr {

constexpr bool Contains(std::string_view chars, char c) {
  for (const char member : chars) {
    if (member == c) return true;
  }
  return false;
}

/// `trim` as a view into `text`.
constexpr std::string_view TrimView(std::string_view text, std::string_view chars, bool both_ends) {
  while (!text.empty() && Contains(chars, text.front())) text.remove_prefix(1);
  while (both_ends && !text.empty() && Contains(chars, text.back())) text.remove_suffix(1);
  return text;
}

/// Hands out the pieces of `split` one at a time, as views into `text`.
class PieceReader {
 public:
  constexpr PieceReader(std::string_view text, std::string_view separator)
      : rest_(text), separator_(separator) {}

  /// False once the last piece was read.
  constexpr bool HasNext() const { return has_next_; }

  constexpr std::string_view Next() {
    const std::size_t end = FindSeparator();
    if (end == std::string_view::npos) return Rest();
    const std::string_view piece = rest_.substr(0, end);
    rest_.remove_prefix(end + separator_.size());
    return piece;
  }

  /// The uncut remainder, as the last piece.
  constexpr std::string_view Rest() {
    has_next_ = false;
    return rest_;
  }

 private:
  constexpr std::size_t FindSeparator() const {
    if (separator_.empty()) return std::string_view::npos;
    return separator_.size() == 1 ? rest_.find(separator_.front()) : rest_.find(separator_);
  }

  std::string_view rest_;
  std::string_view separator_;
  bool has_next_ = true;
};

}  // namespace qeo::xstr

#endif  // XSTR_VIEWS_H_
