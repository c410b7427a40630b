#include "orvo/testing/InjectedFault.h"

#include <algorithm>
#include <cerrno>

namespace Orvo::Testing {

InjectedFault::InjectedFault(FileCall call, int nth, int error) : m_call(call), m_nth(nth), m_error(error) {
    Orvo::Emulator::setFaultInjector(this);
}

InjectedFault::~InjectedFault() { Orvo::Emulator::setFaultInjector(nullptr); }

int InjectedFault::beforeCall(FileCall call, std::size_t& length) {
    m_calls.push_back(call);
    if (m_fired && m_error == kShortWrite && call == FileCall::Write) return ENOSPC;
    if (call != m_call || std::count(m_calls.begin(), m_calls.end(), call) != m_nth) return 0;
    m_fired = true;
    if (m_error != kShortWrite) return m_error;
    length /= 2;
    return 0;
}

} // namespace Orvo::Testing
