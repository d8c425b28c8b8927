// The child records of a record.

#ifndef WEXPOL_RECORDS_OWNED_LIST_H_
#define WEXPOL_RECORDS_OWNED_LIST_H_

#include <list>
#include <memory>
#include <utility>

namespace wexpol {

// Owns the records it points to; copies are deep.
template <typename T>
class OwnedList {
 public:
  OwnedList() = default;
  OwnedList(const OwnedList& other) {
    for (const T* item : other.items_) Append(std::make_unique<T>(*item));
  }
  OwnedList(OwnedList&& other) noexcept { items_.swap(other.items_); }
  OwnedList& operator=(OwnedList other) noexcept {
    items_.swap(other.items_);
    return *this;
  }
  ~OwnedList() { Clear(); }

  void Append(std::unique_ptr<T> item) {
    items_.push_back(nullptr);
    items_.back() = item.release();
  }
  void Clear() {
    for (T* item : items_) delete item;
    items_.clear();
  }
  // Empties the list without freeing: whoever took the records owns them.
  void Release() { items_.clear(); }

  // For reads that append, and for handing the records over.
  std::list<T*>& items() { return items_; }
  const std::list<T*>& items() const { return items_; }

 private:
  std::list<T*> items_;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_OWNED_LIST_H_
