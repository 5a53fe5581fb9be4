#include "platform/store/odbc/driver/call_thread.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace store {

struct CallThread::State {
  std::mutex mutex;
  std::condition_variable begun;
  std::condition_variable done;
  std::function<SQLRETURN()> call;  // that is to be made
  bool isBusy = false;
  bool isEnding = false;
  SQLRETURN result = SQL_ERROR;
};

CallThread::CallThread() : state_(std::make_shared<State>()), thread_([state = state_] { run(state); }) {}

CallThread::~CallThread() {
  bool isBusy = false;
  {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->isEnding = true;
    isBusy = state_->isBusy;
  }
  state_->begun.notify_all();
  if (isBusy) {
    thread_.detach();
  } else {
    thread_.join();
  }
}

void CallThread::run(const std::shared_ptr<State>& state) {
  std::unique_lock<std::mutex> lock(state->mutex);
  for (;;) {
    state->begun.wait(lock, [&] { return state->call || state->isEnding; });
    if (!state->call) return;
    std::function<SQLRETURN()> call = std::exchange(state->call, nullptr);
    lock.unlock();
    SQLRETURN result = SQL_ERROR;
    try {
      result = call();
    } catch (...) {
      // There is nobody on this thread to be told. Who waits for the call finds what it left, and that it
      // failed.
    }
    // Before anybody goes on: what goes with it must not go while the driver is used again.
    call = nullptr;
    lock.lock();
    state->result = result;
    state->isBusy = false;
    state->done.notify_all();
  }
}

void CallThread::begin(std::function<SQLRETURN()> call) {
  {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->call = std::move(call);
    state_->isBusy = true;
  }
  state_->begun.notify_all();
}

bool CallThread::waitFor(std::chrono::milliseconds time) {
  std::unique_lock<std::mutex> lock(state_->mutex);
  return state_->done.wait_for(lock, time, [this] { return !state_->isBusy; });
}

SQLRETURN CallThread::result() const {
  const std::lock_guard<std::mutex> lock(state_->mutex);
  return state_->result;
}

}  // namespace store
