#include "tests/support/SharedLines.h"

#include <sys/mman.h>

#include <array>
#include <cstring>
#include <stdexcept>

namespace kr::testing {

struct SharedLines::Page {
  std::size_t size;
  std::array<char, 65536> text;
};

SharedLines::SharedLines() {
  void* memory = ::mmap(nullptr, sizeof(Page), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
  page_ = static_cast<Page*>(memory);
}

SharedLines::~SharedLines() {
  ::munmap(page_, sizeof(Page));
}

void SharedLines::line(std::string_view text) noexcept {
  const std::lock_guard lock(mutex_);
  if (page_->size + text.size() + 1 > page_->text.size()) return;
  std::memcpy(&page_->text[page_->size], text.data(), text.size());
  page_->size += text.size();
  page_->text[page_->size++] = '\n';
}

std::vector<std::string> SharedLines::lines() const {
  std::vector<std::string> lines;
  std::string_view text(page_->text.data(), page_->size);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return lines;
}

void SharedLines::clear() noexcept {
  page_->size = 0;
}

}  // namespace kr::testing
