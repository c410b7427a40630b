// Device facts after initialisation: the SW version and its parts, the system-information
// getters with their failure texts, the model line and the product type.
#include "ChildProcess.h"
#include "Common/Utils/ErrorInfo.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include <boost/lexical_cast.hpp>
#include <dlog.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using Platform::IProductInfo;

class ProductFactsTest : public ::testing::Test {
protected:
    void SetUp() override {
        IProductInfo::initializeProduct();
        m_device.clearLogs();
    }

    std::vector<std::string> mainLog() const { return loggedMessages(m_device, LOG_ID_MAIN); }
    std::vector<std::string> systemLog() const { return loggedMessages(m_device, LOG_ID_SYSTEM); }

    TestDevice m_device;
};

TEST(ProductInitializationTest, LogsTheBuildTarget) {
    TestDevice device;
    IProductInfo::initializeProduct();
    EXPECT_EQ(loggedMessages(device, LOG_ID_MAIN), std::vector<std::string>{"INF Product was build for emulator"});
}

TEST(ProductInitializationDeathTest, SecondInitialisationStopsTheProgram) {
    if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    TestDevice device;
    IProductInfo::initializeProduct();
    EXPECT_EXIT(
        {
            hideConsole();
            IProductInfo::initializeProduct();
        },
        ::testing::KilledBySignal(SIGABRT), "ASSERTION FAILED: !m_isInitialized, .*initializeProduct.*CProductInfo\\.cpp:[0-9]+\n");
}

TEST_F(ProductFactsTest, VersionPartsSplitAtTheLastDash) {
    m_device.setConf("system-info.128", "string T-XYZ9-1302.5");
    EXPECT_EQ(IProductInfo::getVersionString(), "1302.5");
    EXPECT_EQ(IProductInfo::getModelString(), "T-XYZ9");
    EXPECT_EQ(IProductInfo::getMajorSWVersion(), 1302);
    EXPECT_EQ(IProductInfo::getMinorSWVersion(), 5);
    const std::vector<std::string> parsing = {
        "DBG getParsedModelAndVersion got version string 'T-XYZ9-1302.5'",
        "DBG version string: 1302.5",
        "DBG version:1302.5",
    };
    std::vector<std::string> expected = {"INF Version string: 1302.5."};
    for (const char* result : {"INF Model string: T-XYZ9.", "INF MAJOR SW VERSION: 1302", "INF MINOR SW VERSION: 5"}) {
        expected.insert(expected.end(), parsing.begin(), parsing.end());
        expected.push_back(result);
    }
    EXPECT_EQ(mainLog(), expected);
}

TEST_F(ProductFactsTest, VersionNumbersKeepTheirLow16Bits) {
    m_device.setConf("system-info.128", "string M-65537.70000");
    EXPECT_EQ(IProductInfo::getMajorSWVersion(), 1);
    EXPECT_EQ(IProductInfo::getMinorSWVersion(), 70000 - 65536);
    m_device.setConf("system-info.128", "string M--1.7");
    EXPECT_EQ(IProductInfo::getModelString(), "M-");
    EXPECT_EQ(IProductInfo::getMajorSWVersion(), 1);
    m_device.setConf("system-info.128", "string M-1302");
    EXPECT_EQ(IProductInfo::getMinorSWVersion(), 0);
}

TEST_F(ProductFactsTest, SWVersionWithoutDashIsRejected) {
    m_device.setConf("system-info.128", "string T1302.5");
    const std::vector<std::pair<std::string, std::function<void()>>> getters = {
        {"getVersionString", [] { IProductInfo::getVersionString(); }},
        {"getParsedModelAndVersion", [] { IProductInfo::getModelString(); }},
        {"getParsedModelAndVersion", [] { IProductInfo::getMajorSWVersion(); }},
        {"getParsedModelAndVersion", [] { IProductInfo::getMinorSWVersion(); }},
    };
    for (const auto& getter : getters) {
        m_device.clearLogs();
        try {
            getter.second();
            ADD_FAILURE() << getter.first << ": no exception";
        } catch (const Common::Utils::GenericException& exception) {
            const std::string* description = boost::get_error_info<Common::Utils::errinfo_description>(exception);
            const std::string* value = boost::get_error_info<Common::Utils::errinfo_string>(exception);
            ASSERT_NE(description, nullptr);
            ASSERT_NE(value, nullptr);
            EXPECT_EQ(*description, getter.first + ": Wrong string format - lack of dash");
            EXPECT_EQ(*value, "T1302.5");
        }
        EXPECT_EQ(systemLog(), std::vector<std::string>{"ERR " + getter.first + ": Wrong string format - lack of dash: T1302.5"});
    }
}

TEST_F(ProductFactsTest, SWVersionEndingInDashHasAnEmptyVersion) {
    m_device.setConf("system-info.128", "string T-XYZ9-");
    EXPECT_EQ(IProductInfo::getVersionString(), "");
    EXPECT_THROW(IProductInfo::getModelString(), boost::bad_lexical_cast);
    EXPECT_THROW(IProductInfo::getMajorSWVersion(), boost::bad_lexical_cast);
    m_device.setConf("system-info.128", "string T-1.2.3");
    EXPECT_THROW(IProductInfo::getMinorSWVersion(), boost::bad_lexical_cast);
}

struct SystemInfoRead {
    const char* function; // where a failure is recorded
    std::function<std::string()> get;
    const char* key;
    const char* failure;
};

// The getters of string keys.
std::vector<SystemInfoRead> stringReads() {
    return {
        {"getMainSoftwareVersionDate", IProductInfo::getMainSoftwareVersionDate, "system-info.8",
         "Unable to read SW version from system-info"},
        {"getSubmicomVersion", IProductInfo::getSubmicomVersion, "system-info.133",
         "Unable to read SW version from system-info"},
        {"getPlatformType", IProductInfo::getPlatformType, "system-info.564",
         "Unable to read platform type from system-info"},
        {"getChipsetType", IProductInfo::getChipsetType, "system-info.91",
         "Unable to read chipset type from system-info"},
        {"getModelLine", IProductInfo::getModelLine, "system-info.0", "Unable to read model line from system-info"},
        {"getLocalset", IProductInfo::getLocalset, "system-info.90", "Unable to read localset from system-info"},
        {"getPartitionTxtFilePath", [] { return IProductInfo::getPartitionTxtFilePath().string(); }, "system-info.301",
         "Unable to read partition file path from system-info"},
    };
}

TEST_F(ProductFactsTest, StringFactsAreReadByKeyNumber) {
    for (const SystemInfoRead& read : stringReads()) {
        m_device.setConf(read.key, std::string("string value of ") + read.key);
        EXPECT_EQ(read.get(), std::string("value of ") + read.key) << read.function;
    }
    EXPECT_EQ(mainLog(), std::vector<std::string>{"INF Partition.txt file path is: value of system-info.301"});
}

TEST_F(ProductFactsTest, FailedReadsThrowWithTheirOwnText) {
    std::vector<SystemInfoRead> reads = stringReads();
    reads.push_back({"getSWVersionString", IProductInfo::getVersionString, "system-info.128",
                     "Unable to read SW version from system-info"});
    reads.push_back({"getProductType", IProductInfo::getProductType, "system-info.77",
                     "Unable to read product key from system-info"});
    for (const SystemInfoRead& read : reads) {
        for (const char* failure : {"error -5", "bool true"}) { // a failing service, a key of another type
            m_device.setConf(read.key, failure);
            m_device.clearLogs();
            try {
                read.get();
                ADD_FAILURE() << read.function << ": no exception";
            } catch (const Platform::SystemInfoAPIInternalProblemException& exception) {
                const std::string* description = boost::get_error_info<Common::Utils::errinfo_description>(exception);
                const char* const* function = boost::get_error_info<boost::throw_function>(exception);
                ASSERT_NE(description, nullptr) << read.function;
                ASSERT_NE(function, nullptr) << read.function;
                EXPECT_EQ(*description, read.failure);
                EXPECT_NE(std::string(*function).find(read.function), std::string::npos) << *function;
            }
            EXPECT_EQ(systemLog(), std::vector<std::string>{std::string("ERR ") + read.failure}) << read.function;
        }
    }
}

TEST_F(ProductFactsTest, ChinaModelLineReplacesTheMarker) {
    m_device.setConf("system-info.0", "string CHI_DTV");
    m_device.setConf("system-info.620", "string CHINA_DTV_2023");
    EXPECT_EQ(IProductInfo::getModelLine(), "CHINA_DTV_2023");
    m_device.setConf("system-info.0", "string chi_dtv");
    EXPECT_EQ(IProductInfo::getModelLine(), "chi_dtv");
    m_device.setConf("system-info.0", "string CHI_DTV ");
    EXPECT_EQ(IProductInfo::getModelLine(), "CHI_DTV ");
    m_device.setConf("system-info.0", "string CHI_DTV");
    m_device.removeConf("system-info.620");
    EXPECT_THROW(IProductInfo::getModelLine(), Platform::SystemInfoAPIInternalProblemException);
    EXPECT_EQ(systemLog(), std::vector<std::string>{"ERR Unable to read china model line from system-info"});
}

TEST_F(ProductFactsTest, ProductCodesMapToTheirTypes) {
    const std::vector<std::string> types = {"TV", "MONITOR", "AV", "PROJECTOR", "LFD", "SMD", "AV", "AV", "HTV", "SPK"};
    for (std::size_t code = 0; code < types.size(); ++code) {
        m_device.setConf("system-info.77", "int " + std::to_string(code));
        EXPECT_EQ(IProductInfo::getProductType(), types[code]) << code;
    }
    EXPECT_EQ(mainLog().back(), "INF Product Type: SPK.");
}

TEST_F(ProductFactsTest, UnknownProductCodeGivesAnEmptyType) {
    for (const char* code : {"int 10", "int -1", "int 10"}) { // the second 10 finds the row the first added
        m_device.setConf("system-info.77", code);
        EXPECT_EQ(IProductInfo::getProductType(), "") << code;
    }
    EXPECT_EQ(mainLog(), std::vector<std::string>(3, "INF Product Type: ."));
    EXPECT_TRUE(systemLog().empty());
    m_device.setConf("system-info.77", "int 2");
    EXPECT_EQ(IProductInfo::getProductType(), "AV");
}

} // namespace
} // namespace Testing
} // namespace Orvo
