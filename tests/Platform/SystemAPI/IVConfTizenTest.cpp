#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include "ErrorInfoMatchers.h"
#include "orvo/testing/LogLines.h"

#include <vconf.h>

#include <cmath>
#include <tuple>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using Platform::VConf;
using Platform::VConfException;

using Samples = std::tuple<bool, int, double, std::string>;
const Samples kFallbacks{true, -17, -0.5, "default text"};
// The double needs all 64 bits; the empty text is a value, not a failure. LeakSanitizer checks
// that the platform's buffer of the text read is released.
const Samples kStored{false, 2147483647, std::nextafter(1.0 / 3.0, 1.0), ""};

template <typename T>
class VConfTest : public Test {
protected:
    VConfTest() { device.addSetting("db/test/value", Emulator::SettingType::String, ""); }
    TestDevice device;
};

using ValueTypes = Types<bool, int, double, std::string>;
TYPED_TEST_SUITE(VConfTest, ValueTypes);

TYPED_TEST(VConfTest, StoredValueIsReadBackExactly) {
    const VConf<TypeParam> setting("db/test/value");
    setting.set(std::get<TypeParam>(kStored));
    EXPECT_EQ(std::get<TypeParam>(kStored), setting.get());
    EXPECT_EQ(std::get<TypeParam>(kStored), setting.getOrDefault(std::get<TypeParam>(kFallbacks)));
    EXPECT_TRUE(loggedTexts(this->device, "WRN").empty());
}

TYPED_TEST(VConfTest, FailuresFallBackOrThrowAfterOneWarning) {
    const VConf<TypeParam> absent("db/test/absent");
    EXPECT_EQ(std::get<TypeParam>(kFallbacks), absent.getOrDefault(std::get<TypeParam>(kFallbacks)));
    EXPECT_THAT(
        [&absent] { absent.get(); },
        Throws<VConfException>(
            AllOf(HasInfo<Common::Utils::errinfo_stream>("vconf_get failed while trying to access key: db/test/absent"),
                  HasInfo<Common::Utils::errinfo_errorcode>(-1),
                  HasInfo<boost::throw_function>(ContainsRegex("VConfT<.*>::get\\(\\) const")))));
    // vconf never creates a key: a set of one the device lacks fails.
    const VConf<TypeParam> refused("bad/key");
    EXPECT_THAT([&refused] { refused.set(std::get<TypeParam>(kStored)); },
                Throws<VConfException>(AllOf(
                    HasInfo<Common::Utils::errinfo_stream>("vconf_set failed while trying to access key: bad/key"),
                    HasInfo<Common::Utils::errinfo_errorcode>(vconf_set_int("bad/key", 0)),
                    HasInfo<boost::throw_function>(ContainsRegex("VConfT<.*>::set\\(const [^)]*&\\) const")))));
    EXPECT_THAT(loggedTexts(this->device, "WRN"),
                ElementsAre("vconf_get failed while trying to access key: db/test/absent, return default value",
                            "vconf_get failed while trying to access key: db/test/absent",
                            "vconf_set failed while trying to access key: bad/key"));
    EXPECT_THAT(this->device.logMessages(), Each(HasSubstr("] IVConfTizen.h:")));
}

} // namespace
} // namespace Orvo::Testing
