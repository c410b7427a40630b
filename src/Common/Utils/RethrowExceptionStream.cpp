#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Common/Utils/OrvoAssert.h"

namespace Orvo {
namespace Common {
namespace Utils {
namespace {

// The newest context stands first, one line per catch site.
void addTrail(boost::exception& exception, std::ostringstream& context) {
    if (const std::string* trail = boost::get_error_info<errinfo_rethrows>(exception)) {
        context << '\n' << *trail;
    }
    exception << errinfo_rethrows(context.str());
}

// boost::current_exception() holds a standard library exception as a copy that is also a
// boost::exception and records the original type; it is still a foreign exception here. A
// boost::exception that Boost could not copy is held as boost::unknown_exception, which records
// the original type as well but keeps the error information: that one is ours.
bool isCopiedStandardException(const boost::exception& exception) {
    return dynamic_cast<const boost::unknown_exception*>(&exception) == nullptr &&
           boost::get_error_info<boost::original_exception_type>(exception) != nullptr;
}

void logUnknownException(const std::string& context) {
    ORVO_LOG(INF, "Rethrowing unknown exception: %s", context.c_str());
}

} // namespace

RethrowExceptionStream::RethrowExceptionStream(boost::exception_ptr excPtr) : m_excPtr(excPtr) { ORVO_ASSERT(excPtr); }

RethrowExceptionStream::~RethrowExceptionStream() noexcept(false) {
    try {
        boost::rethrow_exception(m_excPtr);
    } catch (boost::exception& exception) {
        if (isCopiedStandardException(exception)) {
            logUnknownException(m_stream.str());
            throw;
        }
        addTrail(exception, m_stream);
        throw;
    } catch (boost::thread_interrupted&) {
        ORVO_THROW(thread_interrupted() << errinfo_rethrows(m_stream.str()));
    } catch (...) {
        logUnknownException(m_stream.str());
        throw;
    }
}

} // namespace Utils
} // namespace Common
} // namespace Orvo
