#include "Debug/DebugAndTestParameters/XmlArchive.h"

#include "Common/Utils/ErrorInfo.h"

#include <boost/archive/impl/archive_serializer_map.ipp>
#include <boost/archive/impl/basic_xml_iarchive.ipp>
#include <boost/archive/impl/xml_iarchive_impl.ipp>
#include <boost/archive/xml_archive_exception.hpp>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace boost {
namespace archive {
template class basic_xml_iarchive<Orvo::OrvoCommon::CheckedXmlIArchive>;
template class xml_iarchive_impl<Orvo::OrvoCommon::CheckedXmlIArchive>;
namespace detail {
template class archive_serializer_map<Orvo::OrvoCommon::CheckedXmlIArchive>;
} // namespace detail
} // namespace archive
} // namespace boost

namespace Orvo {
namespace OrvoCommon {

CheckedXmlIArchive::CheckedXmlIArchive(std::istream& in)
    : xml_iarchive_impl<CheckedXmlIArchive>(in, boost::archive::no_xml_tag_checking) {
    readHeader();
}

void CheckedXmlIArchive::readHeader() {
    gimpl->init(is);
    // The stock archive asserts, which aborts the process, on a version beyond 16 bits; no
    // version newer than this Boost's own can be read in any case.
    const unsigned int version = gimpl->rv.version;
    if (version > static_cast<unsigned int>(boost::archive::BOOST_ARCHIVE_VERSION())) {
        throw boost::archive::archive_exception(boost::archive::archive_exception::unsupported_version);
    }
    set_library_version(boost::archive::library_version_type(version));
}

void CheckedXmlIArchive::load_end(const char* name) {
    // The base reads the closing tag and keeps the nesting; the flag leaves the comparison here.
    basic_xml_iarchive<CheckedXmlIArchive>::load_end(name);
    if (name != nullptr && gimpl->rv.object_name != name) {
        throw boost::archive::xml_archive_exception(boost::archive::xml_archive_exception::xml_archive_tag_mismatch,
                                                    name);
    }
}

void finishXmlArchive(std::istream& in) {
    const std::string rest{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    in.setstate(std::ios_base::failbit);
    const std::string closingTag = "</boost_serialization>";
    const std::string::size_type tag = rest.find_first_not_of(" \t\r\n");
    if (tag == std::string::npos || rest.compare(tag, closingTag.size(), closingTag) != 0) {
        throw boost::archive::xml_archive_exception(boost::archive::xml_archive_exception::xml_archive_parsing_error);
    }
}

void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
    std::ofstream out(path, std::ios_base::out | std::ios_base::trunc);
    if (!out.is_open()) {
        throw std::runtime_error("cannot open the file for writing:" + Common::Utils::errnoText(errno));
    }
    write(out);
    out.close();
    if (out.fail()) {
        throw std::runtime_error("writing the file failed");
    }
}

} // namespace OrvoCommon
} // namespace Orvo
