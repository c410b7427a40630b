#pragma once
// Matchers for the error information that a thrown exception carries:
//   EXPECT_THAT([] { read(); }, Throws<GenericException>(HasInfo<errinfo_description>("text")));

#include <boost/exception/get_error_info.hpp>
#include <gmock/gmock.h>

namespace Orvo::Testing {

template <class Info>
::testing::Matcher<const boost::exception&> HasInfo(const ::testing::Matcher<const typename Info::value_type&>& value) {
    return ::testing::ResultOf([](const boost::exception& e) { return boost::get_error_info<Info>(e); },
                               ::testing::Pointee(value));
}

template <class Info>
::testing::Matcher<const boost::exception&> LacksInfo() {
    return ::testing::ResultOf([](const boost::exception& e) { return boost::get_error_info<Info>(e); },
                               ::testing::IsNull());
}

} // namespace Orvo::Testing
