#include "ostrelsys/OReadWriteLock.h"

void OReadWriteLock::LockForWrite() {
  m_mutex.lock();
  m_isWriteLocked = true;
}

bool OReadWriteLock::TryLockForWrite() {
  if (!m_mutex.try_lock()) return false;
  m_isWriteLocked = true;
  return true;
}

void OReadWriteLock::Unlock() {
  if (!m_isWriteLocked) {
    m_mutex.unlock_shared();
    return;
  }
  m_isWriteLocked = false;
  m_mutex.unlock();
}
