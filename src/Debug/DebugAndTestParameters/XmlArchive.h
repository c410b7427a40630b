#pragma once
// Parameter files: Boost XML archives holding one named object.

#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/nvp.hpp>

#include <fstream>
#include <istream>
#include <string>

namespace Orvo {
namespace OrvoCommon {

// Consumes the rest of an archive after its object and throws
// boost::archive::xml_archive_exception unless the archive's closing tag is there. It then puts
// `in` in the failed state so that the archive's destructor does not read again: that read throws
// from a destructor, which ends the process, when the input stops before a closing tag.
void finishXmlArchive(std::istream& in);

// Opens `path` for writing, truncating it; throws std::runtime_error with the reason on failure.
void openForWriting(std::ofstream& out, const std::string& path);

// Flushes and closes `out`; throws std::runtime_error when the data did not reach the file.
void closeWritten(std::ofstream& out);

// Reads the object `name` into `object`; throws on malformed input. Fields read before a failure
// keep their new values.
template <class T>
void readXmlArchive(std::istream& in, const char* name, T& object) {
    boost::archive::xml_iarchive archive(in);
    archive >> boost::serialization::make_nvp(name, object);
    finishXmlArchive(in);
}

// Writes `object` as the archive's object `name` to the file at `path`; throws on failure.
template <class T>
void writeXmlArchive(const std::string& path, const char* name, const T& object) {
    std::ofstream out;
    openForWriting(out, path);
    {
        boost::archive::xml_oarchive archive(out);
        archive << boost::serialization::make_nvp(name, object);
    } // the archive writes its closing tag when it goes
    closeWritten(out);
}

} // namespace OrvoCommon
} // namespace Orvo
