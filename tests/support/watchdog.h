// SPDX-License-Identifier: MIT
// Ends the process when a test hangs, on a thread that never ends or a lock that is never released, and names
// the step.
#ifndef TESTS_WATCHDOG_H
#define TESTS_WATCHDOG_H

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>

namespace test
{

class Watchdog_t
{
public:
    explicit Watchdog_t(std::chrono::milliseconds patience, std::string doing = "ending")
        : m_doing(std::move(doing)), m_thread([this, patience] { Watch(patience); })
    {
    }
    ~Watchdog_t()
    {
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_bDone = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }
    Watchdog_t(const Watchdog_t &) = delete;
    Watchdog_t &operator=(const Watchdog_t &) = delete;

    void Progress(const std::string &doing)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_doing = doing;
        m_iSteps++;
    }

private:
    void Watch(std::chrono::milliseconds patience)
    {
        std::unique_lock<std::mutex> guard(m_mutex);

        for (int iSeen = -1; !m_bDone && iSeen != m_iSteps;) {
            iSeen = m_iSteps;
            m_changed.wait_for(guard, patience, [this] { return m_bDone; });
        }
        if (m_bDone) return;
        dprintf(m_iOutput, "Stuck after %d steps, at: %s\n", m_iSteps, m_doing.c_str());
        _exit(1);
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_bDone = false;
    int m_iSteps = 0;
    std::string m_doing;
    const int m_iOutput = dup(STDOUT_FILENO);
    std::thread m_thread; // last, because it uses all of the above
};

} // namespace test

#endif
