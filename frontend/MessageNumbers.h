// The numbers of the messages of the front end. Their texts are in the message catalogue.
#pragma once

#include <cstdint>

namespace dnz {

constexpr std::int32_t kTemplateMissing = 0x40001000;  // insert: the file name
constexpr std::int32_t kSaveNameLabel = 0x40001004;
constexpr std::int32_t kFailureTitle = 0x40001005;
constexpr std::int32_t kNoFileToOpen = 0x40001006;
constexpr std::int32_t kNoFileToSave = 0x40001007;
constexpr std::int32_t kQueueValueCharacter = 0x40001008;
constexpr std::int32_t kQueueValueUnderscore = 0x40001009;
constexpr std::int32_t kFaultyEntry = 0x40001010;  // inserts: the entry's name, its value
constexpr std::int32_t kNotOurForm = 0x40001011;
constexpr std::int32_t kFailureEnd = 0x40001012;
constexpr std::int32_t kNewNameBlank = 0x40001013;  // insert: the new name
constexpr std::int32_t kQueueValueLength = 0x40001014;
constexpr std::int32_t kValueNumberSign = 0x40001015;
constexpr std::int32_t kValueBlank = 0x40001016;
constexpr std::int32_t kTargetNotWritable = 0x40001017;
constexpr std::int32_t kNameHead = 0x40001018;
constexpr std::int32_t kValueHead = 0x40001019;
constexpr std::int32_t kDescriptionHead = 0x40001020;
constexpr std::int32_t kNewEntryText = 0x40001021;
constexpr std::int32_t kNoRequest = 0x40001022;
constexpr std::int32_t kMethodNotPost = 0x40001023;
constexpr std::int32_t kContentNotForm = 0x40001024;
constexpr std::int32_t kEntryLength = 0x40001033;
constexpr std::int32_t kWaitIntervalCharacter = 0x40001035;
constexpr std::int32_t kContextWord = 0x40001036;
constexpr std::int32_t kFileNotReadable = 0x40001037;  // insert: the file name

}  // namespace dnz
