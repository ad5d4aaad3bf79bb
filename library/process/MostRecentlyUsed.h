// A list of entries, the one that was used last in front. It is searched from the front and never trimmed by
// size: what no longer holds is removed on request. Not thread-safe.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace kr {

template <class Entry>
class MostRecentlyUsed {
 public:
  // Whether there has ever been an entry.
  [[nodiscard]] bool exists() const { return entries_.has_value(); }

  // The entries in their order; none while there has never been one.
  [[nodiscard]] const std::vector<Entry>& entries() const {
    static const std::vector<Entry> none;
    return entries_ ? *entries_ : none;
  }

  // The first entry that the test is true of.
  template <class Test>
  [[nodiscard]] std::optional<std::size_t> find(Test test) const {
    const std::vector<Entry>& list = entries();
    const auto found = std::find_if(list.begin(), list.end(), test);
    if (found == list.end()) return std::nullopt;
    return static_cast<std::size_t>(found - list.begin());
  }

  // Puts a new entry in front.
  void add(Entry entry) {
    if (!entries_) entries_.emplace();
    entries_->insert(entries_->begin(), std::move(entry));
  }

  // Moves the entry at the index to the front; the others keep their order.
  const Entry& use(std::size_t index) {
    const auto first = entries_->begin();
    std::rotate(first, first + static_cast<std::ptrdiff_t>(index),
                first + static_cast<std::ptrdiff_t>(index) + 1);
    return entries_->front();
  }

  // Removes the entries that the test is true of. A list that ends up empty still exists.
  template <class Test>
  void remove(Test test) {
    if (entries_) std::erase_if(*entries_, test);
  }

 private:
  std::optional<std::vector<Entry>> entries_;
};

}  // namespace kr
