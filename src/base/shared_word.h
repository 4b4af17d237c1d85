// A word that one thread writes while others may read it: the helper threads
// of a search look at the stop flag the shell or the main search sets, and
// the main search adds up the node counts the helpers keep. Each access reads
// or writes the whole word and orders nothing else, which on the machines we
// build for is a plain load or store; the threads meet where order matters
// through the mutexes of the thread pool and the search signals.
#pragma once

// Such a word sits alone on its cache line (alignas), so that the writes of
// one thread never evict a line another thread reads at every node.
constexpr int cacheLineBytes = 64;

template <typename T>
struct SharedWord {
  T value{};

  SharedWord() = default;
  SharedWord(T v) : value(v) {}
  SharedWord(const SharedWord& other) : value(other.load()) {}
  SharedWord& operator=(const SharedWord& other) {
    store(other.load());
    return *this;
  }
  SharedWord& operator=(T v) {
    store(v);
    return *this;
  }
  operator T() const { return load(); }
  T load() const { return __atomic_load_n(&value, __ATOMIC_RELAXED); }
  void store(T v) { __atomic_store_n(&value, v, __ATOMIC_RELAXED); }
};
