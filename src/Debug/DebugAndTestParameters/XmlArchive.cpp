#include "Debug/DebugAndTestParameters/XmlArchive.h"

#include "Common/Utils/ErrorInfo.h"

#include <boost/archive/xml_archive_exception.hpp>

#include <cerrno>
#include <iterator>
#include <stdexcept>

namespace Orvo {
namespace OrvoCommon {

void finishXmlArchive(std::istream& in) {
    const std::string rest{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    in.setstate(std::ios_base::failbit);
    const std::string::size_type tag = rest.find_first_not_of(" \t\r\n");
    if (tag == std::string::npos || rest.compare(tag, 22, "</boost_serialization>") != 0) {
        throw boost::archive::xml_archive_exception(boost::archive::xml_archive_exception::xml_archive_parsing_error);
    }
}

void openForWriting(std::ofstream& out, const std::string& path) {
    out.open(path, std::ios_base::out | std::ios_base::trunc);
    if (!out.is_open()) {
        throw std::runtime_error("cannot open the file for writing:" + Common::Utils::errnoText(errno));
    }
}

void closeWritten(std::ofstream& out) {
    out.close();
    if (out.fail()) {
        throw std::runtime_error("writing the file failed");
    }
}

} // namespace OrvoCommon
} // namespace Orvo
