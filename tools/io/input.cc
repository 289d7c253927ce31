#include "tools/io/input.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "tools/io/nonblocking.h"

namespace qeo::tool {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// In steps of a constant length, which compilers make a few instructions.
std::uint64_t CountNewlines(std::string_view text) {
  constexpr std::size_t kStep = 64;
  std::uint64_t count = 0;
  for (; text.size() >= kStep; text.remove_prefix(kStep)) {
    const char* const bytes = text.data();
    std::uint8_t in_step = 0;
    for (std::size_t i = 0; i < kStep; ++i) {
      in_step = static_cast<std::uint8_t>(in_step + (bytes[i] == '\n' ? 1 : 0));
    }
    count += in_step;
  }
  return count + static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

bool BlockReader::IsReady() const {
  pollfd input = {file_descriptor_, POLLIN, 0};
  return ::poll(&input, 1, 0) != 0;
}

bool BlockReader::Next(Block& block) {
  block.text.swap(rest_);
  rest_.clear();
  block.is_first_part = !is_in_long_line_;
  ReadLine(block.text);
  if (HasMark(block.text)) block.text.erase(0, kByteOrderMark.size());
  is_at_beginning_ = false;
  block.is_overlong = is_in_long_line_;
  block.first_line = next_line_;
  block.is_last_part = false;
  if (!is_in_long_line_) return TakeLines(block);
  TakePart(block);
  return true;
}

// Whether a byte order mark, which is not part of the first line, comes before it.
bool BlockReader::HasMark(std::string_view text) const {
  return is_at_beginning_ && text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

// Makes `text` hold at least one line, or more of one that is too long.
void BlockReader::ReadLine(std::string& text) {
  if (is_in_long_line_) {
    Fill(text);
    return;
  }
  std::size_t newline = std::string::npos;
  std::size_t scanned = 0;
  do {
    newline = text.find('\n', scanned);
    scanned = std::min(newline, text.size());
    is_in_long_line_ = scanned > limits_.longest_line + (HasMark(text) ? kByteOrderMark.size() : 0);
  } while (newline == std::string::npos && !is_in_long_line_ && Fill(text));
}

bool BlockReader::TakeLines(Block& block) {
  const std::size_t newline = block.text.rfind('\n');
  const bool is_last_line_open = newline == std::string::npos;
  if (is_last_line_open && error_ != 0) block.text.clear();
  if (!is_last_line_open) {
    rest_.assign(block.text, newline + 1);
    block.text.resize(newline + 1);
  }
  block.line_count = CountNewlines(block.text);
  if (is_last_line_open && !block.text.empty()) ++block.line_count;
  next_line_ += block.line_count;
  return block.line_count > 0;
}

// Takes what has been read of a line that is too long. A carriage return may be half of its end, so
// it waits for what comes next.
void BlockReader::TakePart(Block& block) {
  block.line_count = block.is_first_part ? 1 : 0;
  const std::size_t newline = block.text.find('\n');
  if (newline != std::string::npos) {
    rest_.assign(block.text, newline + 1);
    block.text.resize(newline + 1);
  } else if (!is_at_end_) {
    const bool has_return = block.text.back() == '\r';
    rest_.assign(has_return ? 1 : 0, '\r');
    block.text.resize(block.text.size() - rest_.size());
    return;
  }
  is_in_long_line_ = false;
  block.is_last_part = true;
  ++next_line_;
}

// Reads what there is, and waits for it.
ssize_t BlockReader::Read(char* bytes) const {
  while (true) {
    const ssize_t count = ::read(file_descriptor_, bytes, limits_.bytes_a_read);
    if (count >= 0) return count;
    if (WouldWait(errno)) {
      WaitFor(file_descriptor_, POLLIN);
    } else if (errno != EINTR) {
      return count;
    }
  }
}

// Appends what one read gives. Returns false when there is no more.
bool BlockReader::Fill(std::string& text) {
  const std::size_t size = text.size();
  text.resize(size + limits_.bytes_a_read);
  const ssize_t count = Read(text.data() + size);
  if (count < 0) error_ = errno;
  text.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  byte_count_ += text.size() - size;
  is_at_end_ = count <= 0;
  return !is_at_end_;
}

}  // namespace qeo::tool
