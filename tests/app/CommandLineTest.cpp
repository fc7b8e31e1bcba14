#include "app/CommandLine.h"

#include <gtest/gtest.h>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

TEST(CommandLineTest, WhatIsNotUnderstoodIsRefusedByItsName) {
  using Wish = CommandLine::Wish;
  EXPECT_EQ(ReadCommandLine({}).wish, Wish::Run);
  EXPECT_EQ(ReadCommandLine({u"-h"_s}).wish, Wish::Help);
  EXPECT_EQ(ReadCommandLine({u"--help"_s}).wish, Wish::Help);
  EXPECT_EQ(ReadCommandLine({u"-v"_s}).wish, Wish::Version);
  EXPECT_EQ(ReadCommandLine({u"--version"_s}).wish, Wish::Version);
  for (const QString& wrong : {u"--silent"_s, u"song.mp3"_s, u"-x"_s, u"-x=1"_s, u"-"_s, u""_s}) {
    const CommandLine line = ReadCommandLine({u"-platform"_s, u"offscreen"_s, wrong});
    EXPECT_EQ(line.wish, Wish::Refused) << wrong.toStdString();
    EXPECT_EQ(line.refused, wrong);
  }
}

TEST(CommandLineTest, OptionsOfTheWindowSystemAreLetThroughWithTheirValues) {
  // A session manager starts the program again like this.
  EXPECT_EQ(ReadCommandLine({u"-session"_s, u"10f1-2"_s}).wish, CommandLine::Wish::Run);
  EXPECT_EQ(ReadCommandLine({u"--display"_s, u":1"_s, u"-style=fusion"_s, u"-reverse"_s}).wish,
            CommandLine::Wish::Run);
  EXPECT_EQ(ReadCommandLine({u"-name"_s, u"--help"_s}).wish, CommandLine::Wish::Run);
  EXPECT_EQ(ReadCommandLine({u"-display"_s}).refused, u"-display"_s);
}

}  // namespace
