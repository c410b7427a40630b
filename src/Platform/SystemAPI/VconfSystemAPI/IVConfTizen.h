#pragma once
// Typed access to one vconf key: a read with a default, a throwing read and a throwing write.
// The platform function used for each value type is chosen at compile time from two tables.

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"

#include <vconf.h>

#include <boost/exception/exception.hpp>

#include <exception>
#include <string>
#include <type_traits>
#include <utility>

namespace Orvo {
namespace Platform {

// A vconf read or write failed; carries the message (errinfo_stream) and vconf's result
// (errinfo_errorcode).
class VConfException : public virtual std::exception, public virtual boost::exception {
public:
    const char* what() const noexcept override { return "Orvo::Platform::VConfException"; }
};

namespace VConfDetails {

// vconf keeps booleans as int; the result is stored as value != 0 even when the read fails.
int vconf_get_bool_wrapper(const char* key, bool* value);
int vconf_set_bool_wrapper(const char* key, bool value);
// -1 (and *value untouched) when vconf has no text for the key; the platform buffer is freed.
int vconf_get_string_wrapper(const char* key, std::string* value);
int vconf_set_string_wrapper(const char* key, std::string value);

// One row of a table: the platform function that reads or writes values of type T.
template <typename T, auto Function>
struct Getter {
    using ValueType = T;
    static int call(const std::string& key, T* value) { return Function(key.c_str(), value); }
};

template <typename T, auto Function>
struct Setter {
    using ValueType = T;
    static int call(const std::string& key, const T& value) { return Function(key.c_str(), value); }
};

// The row for T among Rows; a type without a row does not compile.
template <typename T, typename... Rows>
struct RowFor;

template <bool Matches, typename T, typename First, typename... Rest>
struct RowSelect {
    using type = First;
};

template <typename T, typename First, typename... Rest>
struct RowSelect<false, T, First, Rest...> {
    using type = typename RowFor<T, Rest...>::type;
};

template <typename T, typename First, typename... Rest>
struct RowFor<T, First, Rest...> {
    using type = typename RowSelect<std::is_same<T, typename First::ValueType>::value, T, First, Rest...>::type;
};

template <typename... Getters>
struct GetterMapStruct {
    template <typename T>
    using For = typename RowFor<T, Getters...>::type;
};

template <typename... Setters>
struct SetterMapStruct {
    template <typename T>
    using For = typename RowFor<T, Setters...>::type;
};

template <typename GetterMapT, typename SetterMapT, typename T>
class VConfT {
public:
    explicit VConfT(std::string key) : m_key(std::move(key)) {}

    // The stored value, or defaultValue (with one WRN line) when vconf cannot give it.
    T getOrDefault(const T& defaultValue) const {
        T value(defaultValue);
        if (GetterMapT::template For<T>::call(m_key, &value) == 0) {
            return value;
        }
        ORVO_LOG(WRN, "vconf_get failed while trying to access key: %s, return default value", m_key.c_str());
        return defaultValue;
    }

    // The stored value; VConfException when vconf cannot give it.
    T get() const {
        T value{};
        const int result = GetterMapT::template For<T>::call(m_key, &value);
        if (result != 0) {
            ORVO_LOG(WRN, "vconf_get failed while trying to access key: %s", m_key.c_str());
            ORVO_THROW(VConfException() << Common::Utils::errinfo_stream(
                                               "vconf_get failed while trying to access key: " + m_key)
                                        << Common::Utils::errinfo_errorcode(result));
        }
        return value;
    }

    // Stores the value; VConfException when vconf refuses it.
    void set(const T& value) const {
        const int result = SetterMapT::template For<T>::call(m_key, value);
        if (result != 0) {
            ORVO_LOG(WRN, "vconf_set failed while trying to access key: %s", m_key.c_str());
            ORVO_THROW(VConfException() << Common::Utils::errinfo_stream(
                                               "vconf_set failed while trying to access key: " + m_key)
                                        << Common::Utils::errinfo_errorcode(result));
        }
    }

private:
    std::string m_key;
};

using DefaultGetterMap =
    GetterMapStruct<Getter<bool, &vconf_get_bool_wrapper>, Getter<int, &vconf_get_int>, Getter<double, &vconf_get_dbl>,
                    Getter<std::string, &vconf_get_string_wrapper>>;
using DefaultSetterMap =
    SetterMapStruct<Setter<bool, &vconf_set_bool_wrapper>, Setter<int, &vconf_set_int>, Setter<double, &vconf_set_dbl>,
                    Setter<std::string, &vconf_set_string_wrapper>>;

} // namespace VConfDetails

// The accessor of the platform's vconf: VConf<int>("db/...").getOrDefault(0).
template <typename T>
using VConf = VConfDetails::VConfT<VConfDetails::DefaultGetterMap, VConfDetails::DefaultSetterMap, T>;

} // namespace Platform
} // namespace Orvo
