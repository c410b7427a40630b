#pragma once
// Parameter files: Boost XML archives holding one named object.

#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/nvp.hpp>

#include <fstream>
#include <functional>
#include <istream>
#include <ostream>
#include <string>

namespace Orvo {
namespace OrvoCommon {

// Boost's XML input archive with a safe check of closing tags and of the header's version. The stock archive compares a
// closing tag with the expected element name by reading as many characters of the name as the
// tag has, past the end of a shorter name; this one compares them as strings. It reads exactly
// the files that the stock archive reads, and rejects the same mismatches.
class CheckedXmlIArchive : public boost::archive::xml_iarchive_impl<CheckedXmlIArchive> {
public:
    explicit CheckedXmlIArchive(std::istream& in);

protected:
    friend class boost::archive::detail::interface_iarchive<CheckedXmlIArchive>;
    friend class boost::archive::basic_xml_iarchive<CheckedXmlIArchive>;
    friend class boost::archive::load_access;

    // Reached through basic_xml_iarchive's load_override, in place of the stock comparison.
    void load_end(const char* name);

private:
    // The archive's header, as the stock archive reads it, with its version checked first.
    void readHeader();
};

// Consumes the rest of an archive after its object and throws
// boost::archive::xml_archive_exception unless the archive's closing tag is there. It then puts
// `in` in the failed state so that the archive's destructor does not read again: that read throws
// from a destructor, which ends the process, when the input stops before a closing tag.
void finishXmlArchive(std::istream& in);

// Reads the object `name` into `object`; throws on malformed input. Fields read before a failure
// keep their new values.
template <class T>
void readXmlArchive(std::istream& in, const char* name, T& object) {
    CheckedXmlIArchive archive(in);
    archive >> boost::serialization::make_nvp(name, object);
    finishXmlArchive(in);
}

// Writes `object` as the archive's object `name`, closing tag included.
template <class T>
void writeXmlArchive(std::ostream& out, const char* name, const T& object) {
    boost::archive::xml_oarchive archive(out);
    archive << boost::serialization::make_nvp(name, object);
}

// Opens `path` for writing (truncating it), lets `write` fill it and closes it; throws
// std::runtime_error with the reason when the file cannot be opened or written.
void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write);

// Reads the object `name` of the archive file at `path` into `object`. Returns false, leaving
// `object` as it was, when the file cannot be opened; throws as readXmlArchive otherwise.
template <class T>
bool readXmlFile(const std::string& path, const char* name, T& object) {
    std::ifstream in(path);
    if (!in.is_open()) {
        return false;
    }
    readXmlArchive(in, name, object);
    return true;
}

// Writes `object` as the object `name` of the archive file at `path`; throws as writeFile.
template <class T>
void writeXmlFile(const std::string& path, const char* name, const T& object) {
    writeFile(path, [name, &object](std::ostream& out) { writeXmlArchive(out, name, object); });
}

} // namespace OrvoCommon
} // namespace Orvo
