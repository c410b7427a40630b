#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Common/Utils/OrvoAssert.h"

namespace Orvo {
namespace Common {
namespace Utils {
namespace {

// boost::current_exception() copies the standard library's exception types into a Boost
// wrapper that records the original type; they are still foreign exceptions here.
bool isWrappedStandardException(const boost::exception& exception) {
    return boost::get_error_info<boost::original_exception_type>(exception) != nullptr;
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
        if (isWrappedStandardException(exception)) {
            logUnknownException(m_stream.str());
            throw;
        }
        // The newest context stands first, one line per catch site.
        if (const std::string* trail = boost::get_error_info<errinfo_rethrows>(exception)) {
            m_stream << '\n' << *trail;
        }
        exception << errinfo_rethrows(m_stream.str());
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
