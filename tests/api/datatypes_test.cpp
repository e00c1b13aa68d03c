// The storage sizes of the datatypes, known and unknown.
#include "tvxcomn/datatypes.h"

#include <gtest/gtest.h>

#include <map>

namespace {

TEST(Datatypes, StorageSize) {
  const std::map<int, int> fixed = {
      {TVX_TYPE_I1, 1},        {TVX_TYPE_BIT, 1},      {TVX_TYPE_I2, 2},
      {TVX_TYPE_UNICHAR, 2},   {TVX_TYPE_UI2, 2},      {TVX_TYPE_I4, 4},
      {TVX_TYPE_FLT4, 4},      {TVX_TYPE_DATE4, 4},    {TVX_TYPE_MNY4, 4},
      {TVX_TYPE_DATEA, 4},     {TVX_TYPE_TIMEA, 4},    {TVX_TYPE_UI4, 4},
      {TVX_TYPE_FLT8, 8},      {TVX_TYPE_DATETIME, 8}, {TVX_TYPE_MONEY, 8},
      {TVX_TYPE_I8, 8},        {TVX_TYPE_UI8, 8},      {TVX_TYPE_BIGDATETIME, 8},
      {TVX_TYPE_BIGTIME, 8},   {TVX_TYPE_NUM, 35},     {TVX_TYPE_NUM17, 35},
      {TVX_TYPE_VARCHAR, 258}, {TVX_TYPE_VARBIN, 258},
  };
  for (int code = -1; code <= 60; ++code) {
    for (const int maxlength : {0, 7, 100'000}) {
      const auto size = fixed.find(code);
      EXPECT_EQ(size == fixed.end() ? maxlength : size->second, comn_typelen(code, maxlength))
          << "datatype " << code;
    }
  }
}

}  // namespace
