#pragma once
// The exception scheme: exception types that carry typed error information (Boost.Exception),
// the rethrow trail, and the text of an errno.

#include <boost/exception/all.hpp>
#include <boost/thread/exceptions.hpp>
#include <boost/throw_exception.hpp>

#include <cstdint>
#include <exception>
#include <sstream>
#include <string>

namespace Orvo {
namespace Common {
namespace Utils {

// The generic failure. Everything it says is in its error information.
class GenericException : public virtual std::exception, public virtual boost::exception {
public:
    const char* what() const noexcept override { return "Orvo::Common::Utils::GenericException"; }
};

// A thread interruption that carries a rethrow trail (boost::thread_interrupted cannot).
class thread_interrupted : public virtual std::exception,
                           public virtual boost::exception,
                           public virtual boost::thread_interrupted {
public:
    const char* what() const noexcept override { return "Orvo::Common::Utils::thread_interrupted"; }
};

// Error-information tags and the error_info types built on them.
struct tag_errinfo_errorcode;
struct tag_errinfo_stream;
struct tag_errinfo_string;
struct tag_errinfo_description;
struct tag_errinfo_subject;
struct tag_errinfo_supportcode;
struct tag_errinfo_rethrows;

using errinfo_errorcode = boost::error_info<tag_errinfo_errorcode, int32_t>; // platform result, errno
using errinfo_stream = boost::error_info<tag_errinfo_stream, std::string>;   // text composed at the throw site
using errinfo_string = boost::error_info<tag_errinfo_string, std::string>;   // the value the failure concerns
using errinfo_description = boost::error_info<tag_errinfo_description, std::string>;
using errinfo_subject = boost::error_info<tag_errinfo_subject, std::string>; // file, sink, ...
using errinfo_supportcode = boost::error_info<tag_errinfo_supportcode, std::string>;
using errinfo_rethrows = boost::error_info<tag_errinfo_rethrows, std::string>; // newest context first

// " errno=<n> (<strerror_r text>)"; begins with a blank so callers append it to their words.
std::string errnoText(int errorNumber);

// Sets the support code; an existing non-empty one is kept behind the new: "<new>-<old>".
void extendSupportCode(boost::exception& exception, const std::string& supportCode);

// Passes the current exception on with context:
//   catch (...) { RethrowExceptionStream(boost::current_exception()) << "while reading " << path; }
// The destructor rethrows: Boost exceptions with the text prepended to their rethrow trail,
// thread interruptions as Orvo::Common::Utils::thread_interrupted, anything else unchanged.
class RethrowExceptionStream {
public:
    explicit RethrowExceptionStream(boost::exception_ptr excPtr);
    [[noreturn]] ~RethrowExceptionStream() noexcept(false);
    RethrowExceptionStream(const RethrowExceptionStream&) = delete;
    RethrowExceptionStream& operator=(const RethrowExceptionStream&) = delete;

    template <typename T>
    RethrowExceptionStream& operator<<(const T& value) {
        m_stream << value;
        return *this;
    }

private:
    boost::exception_ptr m_excPtr;
    std::ostringstream m_stream;
};

} // namespace Utils
} // namespace Common
} // namespace Orvo

// Throws an exception with the throw site's function, file and line, clonable into an
// exception_ptr: ORVO_THROW(GenericException() << errinfo_description("..."));
#define ORVO_THROW(exception) BOOST_THROW_EXCEPTION(exception)

// The same with a fixed function text, for throw sites whose recorded function is part of the
// contract and must not depend on the compiler's spelling of __PRETTY_FUNCTION__.
#define ORVO_THROW_IN(functionText, exception)                                                         \
    ::boost::throw_exception(::boost::enable_error_info(exception)                                     \
                             << ::boost::throw_function(functionText) << ::boost::throw_file(__FILE__) \
                             << ::boost::throw_line(__LINE__))
