#pragma once

#include <shared_mutex>

#include "ostrelsys/Export.h"

/// A lock that many readers or one writer hold. It is not recursive; each lock is given back by the thread
/// that took it. Prefer OReadLocker and OWriteLocker, which give it back by themselves.
class OSTRELSYS_API OReadWriteLock {
 public:
  OReadWriteLock() = default;
  OReadWriteLock(OReadWriteLock const&) = delete;
  OReadWriteLock& operator=(OReadWriteLock const&) = delete;

  void LockForRead() { m_mutex.lock_shared(); }
  void LockForWrite();
  /// Both give false at once when the lock isn't free.
  bool TryLockForRead() { return m_mutex.try_lock_shared(); }
  bool TryLockForWrite();
  /// Gives back the calling thread's lock, of either kind.
  void Unlock();

 private:
  std::shared_mutex m_mutex;
  // Changes only while a writer holds the lock, so whoever holds it may read it.
  bool m_isWriteLocked = false;
};

class OReadLocker {
 public:
  explicit OReadLocker(OReadWriteLock& lock) : m_lock(lock) { m_lock.LockForRead(); }
  ~OReadLocker() { m_lock.Unlock(); }
  OReadLocker(OReadLocker const&) = delete;
  OReadLocker& operator=(OReadLocker const&) = delete;

 private:
  OReadWriteLock& m_lock;
};

class OWriteLocker {
 public:
  explicit OWriteLocker(OReadWriteLock& lock) : m_lock(lock) { m_lock.LockForWrite(); }
  ~OWriteLocker() { m_lock.Unlock(); }
  OWriteLocker(OWriteLocker const&) = delete;
  OWriteLocker& operator=(OWriteLocker const&) = delete;

 private:
  OReadWriteLock& m_lock;
};
