// Opening and closing a context, and contexts at work: two side by side, one under several threads.
#include "tvxcomn/context.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <climits>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/failing_heap.hpp"
#include "tvxcomn/dispatch.h"
#include "tvxcomn/null.h"

namespace {

using testing::KilledBySignal;
using tvx::test::FailingHeap;
using tvx::test::live_blocks;

comn_context* open_context() {
  comn_context* context = nullptr;
  EXPECT_EQ(CS_SUCCEED, comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &context));
  return context;
}

comn_datafmt format_of(int32_t datatype, int32_t maxlength) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  return format;
}

// The text after a way through the table to i4 and back; "error" when a step fails.
std::string there_and_back(comn_context* context, std::string_view text) {
  const comn_datafmt source = format_of(TVX_TYPE_CHAR, static_cast<int32_t>(text.size()));
  const comn_datafmt number = format_of(TVX_TYPE_I4, 4);
  int32_t value = 0, length = 0;
  char out[12];
  const comn_datafmt destination = format_of(TVX_TYPE_CHAR, sizeof out);
  comn_conversion* const read = com_conv_func(context, TVX_TYPE_CHAR, TVX_TYPE_I4);
  comn_conversion* const write = com_conv_func(context, TVX_TYPE_I4, TVX_TYPE_CHAR);
  if (read(context, &source, text.data(), &number, &value, &length) != CS_SUCCEED) return "error";
  if (write(context, &number, &value, &destination, out, &length) != CS_SUCCEED) return "error";
  return {out, static_cast<size_t>(length)};
}

int32_t null_of_i4(comn_context* context) {
  const comn_datafmt none = format_of(TVX_TYPE_NULL23, 0), number = format_of(TVX_TYPE_I4, 4);
  int32_t value = -1, length = 0;
  comn_conversion* const routine = com_conv_func(context, TVX_TYPE_NULL23, TVX_TYPE_I4);
  EXPECT_EQ(CS_SUCCEED, routine(context, &none, "", &number, &value, &length));
  EXPECT_EQ(4, length);
  return value;
}

int32_t fake(comn_context*, const comn_datafmt*, const void*, const comn_datafmt*, void*,
             int32_t*) {
  return CS_SUCCEED;
}

TEST(ContextOpen, WithoutLocalisation) {
  const long before = live_blocks();
  for (const char* locale : {static_cast<const char*>(nullptr), "default", "no such locale"}) {
    comn_context* context = nullptr;
    ASSERT_EQ(CS_SUCCEED, comn_context_open(locale, COMN_CONTEXT_NO_LOCALISATION, &context));
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(nullptr, context->default_locale);
    EXPECT_NE(nullptr, context->state);
    EXPECT_EQ("-2147483648", there_and_back(context, " -2147483648 "));
    EXPECT_EQ(0, null_of_i4(context));
    EXPECT_EQ(CS_SUCCEED, com_conv_install(context, 45, 3, fake));
    EXPECT_EQ(CS_SUCCEED, com_null_set(context, 45, "abc", 3));
    EXPECT_EQ(CS_SUCCEED, comn_context_close(context));
    EXPECT_EQ(before, live_blocks()) << "everything is released";
  }
}

TEST(ContextOpen, FailureLeavesNothing) {
  const long before = live_blocks();
  comn_context placeholder{};
  long nth = 1;
  for (int32_t result = CS_MEM_ERROR; result == CS_MEM_ERROR; ++nth) {
    comn_context* context = &placeholder;
    const FailingHeap heap(nth);
    result = comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &context);
    if (result != CS_MEM_ERROR) {
      EXPECT_EQ(CS_SUCCEED, comn_context_close(context));
    } else {
      EXPECT_EQ(nullptr, context);
    }
    EXPECT_EQ(before, live_blocks()) << "allocation " << nth;
  }
  EXPECT_GT(nth, 3) << "the context, its state and its tables are allocated";

  comn_context* context = &placeholder;
  EXPECT_EQ(CS_FAIL, comn_context_open("default", 0, &context)) << "no localisation yet";
  EXPECT_EQ(nullptr, context);
  EXPECT_EQ(before, live_blocks());
}

TEST(ContextOpen, NullPointersAreFatal) {
  const char* const message = "Invalid NULL pointer , file '.+' line [0-9]+";
  EXPECT_EXIT(comn_context_open(nullptr, 1, nullptr), KilledBySignal(SIGABRT), message);
  EXPECT_EXIT(comn_context_close(nullptr), KilledBySignal(SIGABRT), message);
}

TEST(ContextUse, TwoSideBySide) {
  comn_context *const first = open_context(), *const second = open_context();
  const int32_t none = INT_MIN;
  ASSERT_EQ(CS_SUCCEED, com_null_set(first, TVX_TYPE_I4, &none, sizeof none));
  ASSERT_EQ(CS_SUCCEED, com_conv_install(first, TVX_TYPE_CHAR, TVX_TYPE_CHAR, fake));
  ASSERT_EQ(CS_SUCCEED, com_conv_install(first, 45, 3, fake));
  EXPECT_EQ(none, null_of_i4(first));
  EXPECT_EQ(0, null_of_i4(second));
  EXPECT_NE(fake, com_conv_func(second, TVX_TYPE_CHAR, TVX_TYPE_CHAR));
  EXPECT_EQ(nullptr, com_conv_func(second, 45, 3));
  EXPECT_EQ(CS_SUCCEED, comn_context_close(first));
  EXPECT_EQ("42", there_and_back(second, "+42"));
  EXPECT_EQ(CS_SUCCEED, comn_context_close(second));
}

TEST(ContextUse, ConversionsAllocateNothing) {
  comn_context* const context = open_context();
  {
    const FailingHeap heap(1);
    EXPECT_EQ("123456789", there_and_back(context, "123456789"));
    EXPECT_EQ("error", there_and_back(context, "12x"));
    EXPECT_EQ(0, null_of_i4(context));
    EXPECT_EQ(0, heap.calls());
  }
  comn_context_close(context);
}

TEST(ContextUse, FourThreadsOnOne) {
  comn_context* const context = open_context();
  ASSERT_EQ(CS_SUCCEED, com_conv_install(context, 45, 3, fake));
  std::atomic<int> faults{0};
  const auto work = [&](int seed) {
    for (int i = 0; i < 5'000; ++i) {
      const std::string text = std::to_string(i * 400'009 % 1'000'003 * seed);
      if (there_and_back(context, text) != text) ++faults;
      if (null_of_i4(context) != 0 || com_conv_func(context, 45, 3) != fake) ++faults;
    }
  };
  std::vector<std::thread> threads;
  for (const int seed : {1, -1, 1'000, -2'000}) threads.emplace_back(work, seed);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(0, faults);
  comn_context_close(context);
}

}  // namespace
