// The life of a context and of its parts, and contexts at work: two side by side, one without
// memory, one under several threads.
#include "tvxcomn/context.h"

#include <atomic>
#include <climits>
#include <thread>
#include <vector>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

// The text after a way through the table to i4 and back; "error" when a step fails.
std::string there_and_back(comn_context* context, std::string_view text) {
  const comn_datafmt source = format_of(TVX_TYPE_CHAR, static_cast<int32_t>(text.size()));
  const comn_datafmt number = format_of(TVX_TYPE_I4), destination = format_of(TVX_TYPE_CHAR, 12);
  int32_t value = 0, length = 0;
  char out[12];
  comn_conversion* const read = com_conv_func(context, TVX_TYPE_CHAR, TVX_TYPE_I4);
  comn_conversion* const write = com_conv_func(context, TVX_TYPE_I4, TVX_TYPE_CHAR);
  if (read(context, &source, text.data(), &number, &value, &length) != CS_SUCCEED ||
      write(context, &number, &value, &destination, out, &length) != CS_SUCCEED)
    return "error";
  return {out, static_cast<size_t>(length)};
}

int32_t null_of_i4(comn_context* context) {
  const comn_datafmt number = format_of(TVX_TYPE_I4);
  int32_t value = -1, length = 0;
  EXPECT_EQ(CS_SUCCEED, com_null_get(context, &number, &value, sizeof value, &length));
  EXPECT_EQ(4, length);
  return value;
}

// A routine where it does not belong.
comn_conversion* const fake = comn_bittovarbin;

// Routines in several rows of the table and the list, and null values.
void fill(comn_context* context) {
  for (const int32_t source : {8, 45, 50, 3})
    for (const int32_t destination : {6, 45})
      EXPECT_EQ(CS_SUCCEED, com_conv_install(context, source, destination, fake));
  for (const int32_t code : {8, 45, 46}) EXPECT_EQ(CS_SUCCEED, com_null_set(context, code, "a", 1));
  EXPECT_EQ(CS_SUCCEED, com_null_reinstall(context, 45));
}

TEST(ContextLife, OpenedAndClosed) {
  comn_context placeholder{}, *context = &placeholder;
  EXPECT_EQ(CS_FAIL, comn_context_open("default", 0, &context)) << "no localisation yet";
  EXPECT_EQ(nullptr, context);
  for (const char* const locale : {static_cast<const char*>(nullptr), "default", "unknown"})
    fail_each_allocation([&](long n) {
      const FailingHeap heap(n);
      context = &placeholder;
      const int32_t result = comn_context_open(locale, COMN_CONTEXT_NO_LOCALISATION, &context);
      EXPECT_EQ(result == CS_MEM_ERROR, context == nullptr);
      if (context == nullptr) return result;
      EXPECT_TRUE(context->default_locale == nullptr && context->state != nullptr);
      return comn_context_close(context);
    });
}

TEST(ContextLife, PartsAreSetUpFreedAndSetUpAgain) {
  comn_context context{};
  EXPECT_EQ(CS_SUCCEED, com_null_free(&context)) << "nothing to free";
  for (int round = 0; round < 2; ++round)
    fail_each_allocation([&](long n) {
      int32_t result;
      {
        const FailingHeap heap(n);
        result = com_conv_init(&context);
        EXPECT_EQ(result == CS_MEM_ERROR, context.conversions == nullptr);
        if (result == CS_SUCCEED) result = com_null_init(&context);
      }
      if (result == CS_SUCCEED) {
        EXPECT_NE(fake, com_conv_func(&context, 8, 6));
        EXPECT_EQ(nullptr, com_conv_func(&context, 45, 6)) << "the overflow list starts empty";
        EXPECT_EQ(0, null_of_i4(&context));
        fill(&context);
        EXPECT_EQ(CS_SUCCEED, com_null_free(&context));
        EXPECT_EQ(0, context.null_count);
      }
      EXPECT_EQ(CS_SUCCEED, com_conv_free(&context));
      EXPECT_TRUE(context.conversions == nullptr && context.conversion_overflow == nullptr);
      EXPECT_EQ(0u, context.conversion_dimension);
      return result;
    });
}

TEST(ContextUse, TwoSideBySide) {
  const Context second = open_context();
  {
    const Context first = open_context();
    const int32_t none = INT_MIN;
    ASSERT_EQ(CS_SUCCEED, com_null_set(first.get(), TVX_TYPE_I4, &none, sizeof none));
    ASSERT_EQ(CS_SUCCEED, com_conv_install(first.get(), TVX_TYPE_CHAR, TVX_TYPE_CHAR, fake));
    ASSERT_EQ(CS_SUCCEED, com_conv_install(first.get(), 45, 3, fake));
    EXPECT_EQ(none, null_of_i4(first.get()));
    EXPECT_EQ(0, null_of_i4(second.get()));
    EXPECT_NE(fake, com_conv_func(second.get(), TVX_TYPE_CHAR, TVX_TYPE_CHAR));
    EXPECT_EQ(nullptr, com_conv_func(second.get(), 45, 3));
  }
  EXPECT_EQ("42", there_and_back(second.get(), "+42"));
}

TEST(ContextUse, WhatNeedsNoMemory) {
  const Context owner = open_context();
  comn_context* const context = owner.get();
  fill(context);
  const FailingHeap heap(1);
  EXPECT_EQ("123456789", there_and_back(context, "123456789"));
  EXPECT_EQ("error", there_and_back(context, "12x"));
  EXPECT_EQ(CS_SUCCEED, com_conv_install(context, 45, 6, nullptr)) << "replaced in place";
  EXPECT_EQ(CS_SUCCEED, com_conv_default(context, 45, 8));
  EXPECT_EQ(CS_SUCCEED, com_null_set(context, 8, "", 0));
  EXPECT_EQ(CS_SUCCEED, com_null_reinstall(context, 7)) << "one that is not longer";
  EXPECT_EQ(0, heap.calls());
}

TEST(ContextUse, FourThreadsOnOne) {
  std::atomic<int> faults{0};
  const auto work = [&](int seed) {
    for (int i = 0; i < 5'000; ++i) {
      const std::string text = std::to_string(i * 400'009 % 1'000'003 * seed);
      if (there_and_back(shared_context(), text) != text) ++faults;
      if (null_of_i4(shared_context()) != 0) ++faults;
    }
  };
  std::vector<std::thread> threads;
  for (const int seed : {1, -1, 1'000, -2'000}) threads.emplace_back(work, seed);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(0, faults);
}

}  // namespace
}  // namespace tvx::test
