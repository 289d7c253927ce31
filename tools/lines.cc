#include "tools/lines.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qeo::tool {
namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 17;

}  // namespace

LineReader::LineReader(int file_descriptor)
    : file_descriptor_(file_descriptor), buffer_(kBlockBytes) {}

bool LineReader::HasLine() {
  const void* const found = std::memchr(buffer_.data() + scanned_, '\n', end_ - scanned_);
  if (found == nullptr) {
    scanned_ = end_;
    return false;
  }
  scanned_ = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
  return true;
}

bool LineReader::Next(Line& line) {
  while (!HasLine()) {
    if (!Fill()) {
      if (error_ != 0 || begin_ == end_) {
        return false;
      }
      line = Take(end_ - begin_, 0);
      line.end = "\n";
      return true;
    }
  }
  const bool after_return = scanned_ > begin_ && buffer_[scanned_ - 1] == '\r';
  const std::size_t end_size = after_return ? 2 : 1;
  line = Take(scanned_ + 1 - end_size - begin_, end_size);
  return true;
}

Line LineReader::Take(std::size_t size, std::size_t end_size) {
  const char* const text = buffer_.data() + begin_;
  begin_ += size + end_size;
  scanned_ = begin_;
  return {{text, size}, {text + size, end_size}};
}

bool LineReader::Fill() {
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
  end_ -= begin_;
  scanned_ -= begin_;
  begin_ = 0;
  if (end_ == buffer_.size()) {
    buffer_.resize(buffer_.size() * 2);
  }
  ssize_t count = -1;
  do {
    count = ::read(file_descriptor_, buffer_.data() + end_, buffer_.size() - end_);
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    error_ = errno;
    return false;
  }
  end_ += static_cast<std::size_t>(count);
  return count > 0;
}

void Output::Flush() {
  std::string_view rest = text_;
  while (!rest.empty() && error_ == 0) {
    const ssize_t count = ::write(file_descriptor_, rest.data(), rest.size());
    if (count >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  text_.clear();
}

bool Output::IsLarge() const { return text_.size() >= kBlockBytes; }

void Output::Close() {
  Flush();
  if (::close(file_descriptor_) != 0 && error_ == 0) {
    error_ = errno;
  }
}

}  // namespace qeo::tool
