// What a thread keeps for itself, at any time of its life.
//
//   struct LastLine { std::string bytes; };
//   const platform::ThreadKept<LastLine> line;
//   line->bytes += "...";

#pragma once

#include <optional>

namespace dq::platform {

/// The calling thread's one `T`, made at its first use. Null once it has ended, as it does before
/// the destructors of objects that the thread used earlier, and before those of static objects: it
/// must not be touched there, and they may well call the library. Who uses `T` names a type of its
/// own. Only a plain `thread_local` that needs no destructor does without this.
template <typename T>
T* PerThread() {
  static thread_local constinit bool ended = false;
  struct Holder {
    T value{};
    ~Holder() { ended = true; }
  };
  if (ended) return nullptr;
  static thread_local Holder holder;
  return &holder.value;
}

/// The calling thread's one `T` for a cache: when that has ended, a fresh one that lives as long as
/// this. For a scope of one thread.
template <typename T>
class ThreadKept {
 public:
  ThreadKept() : kept_(PerThread<T>()) {
    if (kept_ == nullptr) kept_ = &spare_.emplace();
  }
  ThreadKept(const ThreadKept&) = delete;
  ThreadKept& operator=(const ThreadKept&) = delete;

  T& operator*() const { return *kept_; }
  T* operator->() const { return kept_; }

 private:
  std::optional<T> spare_;
  T* kept_;
};

}  // namespace dq::platform
