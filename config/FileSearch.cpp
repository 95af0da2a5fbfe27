#include "config/FileSearch.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "config/Results.h"
#include "services/base/File.h"
#include "services/base/Path.h"
#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr char kSeparator = ':';
constexpr char kLanguageRoot[] = "/opt/nzm/html/dnzgate/";
constexpr char kDefaultLanguage[] = "en_US";
constexpr std::size_t kCodeLength = 5;
constexpr int kOverwrite = 1;

bool isDefaultLanguage(std::string_view language) {
    return language.starts_with("en") || language.starts_with("En") || language == "C" ||
           language == "POSIX";
}

// Portuguese and Polish, Japanese, Korean and Chinese keep the country that is set, and so does a
// language that its country is named after.
bool keepsCountry(const char* code) {
    constexpr std::string_view kFirstLetters = "pjkz";
    const bool byLetter = kFirstLetters.find(code[0]) != std::string_view::npos;
    return byLetter ||
           (upperCase(code[0]) == upperCase(code[3]) && upperCase(code[1]) == upperCase(code[4]));
}

// The name of the language's directory, of at most five characters.
std::string languageCode(const char* language) {
    if (language == nullptr || isDefaultLanguage(language)) {
        return kDefaultLanguage;
    }
    if (std::strcmp(language, "zh") == 0) {
        return "zh_CN";
    }
    char code[kCodeLength + 1] = {};
    BoundedText(code).append(language);
    if (!keepsCountry(code)) {
        // In a code of two letters the terminator hides these.
        code[3] = upperCase(code[0]);
        code[4] = upperCase(code[1]);
    }
    return code;
}

void appendSearchDirectories() {
    std::string path(viewOf(std::getenv("PATH")));
    path.append(":").append(kProgramDirectory).append(":").append(kDataDirectory);
    path.append(":").append(kLanguageRoot).append(languageCode(std::getenv("LANG")));
    setenv("PATH", path.c_str(), kOverwrite);
}

// Tries the file in one directory and writes the path tried to `result`.
bool findInDirectory(std::string_view directory, std::string_view fileName, char* result,
                     std::size_t size) {
    BoundedText path(result, size);
    const std::size_t joinedSize = directory.size() + fileName.size() + 2;
    if (joinedSize > size) {  // too long: the bare name is tried instead
        return !path.append(fileName).truncated() && openRegularFile(result).isOpen();
    }
    path.append(directory).append("/").append(fileName);
    dnzxtr_text(result);
    return openRegularFile(result).isOpen();
}

bool findInList(char* list, std::string_view fileName, char* result, std::size_t size) {
    while (*list != '\0') {
        char* element = list + std::strspn(list, ":");
        list = SearchEnv(element);
        if (*list == kSeparator) {
            *list++ = '\0';
        }
        if (findInDirectory(element, fileName, result, size)) {
            return true;
        }
    }
    return false;
}

}  // namespace

int findfileinpath(const char* envName, const char* fileName, char* result, int maxLength) {
    appendSearchDirectories();
    dnzxtr_text("Using path to find file:");
    dnzxtr_text(fileName);
    const char* list = std::getenv(envName);
    if (list == nullptr || maxLength <= 0) {
        return kFailed;
    }
    const CTextHandle copy(strdup(list));  // the search ends its elements in place
    if (copy == nullptr) {
        return kFailed;
    }
    const auto size = static_cast<std::size_t>(maxLength);
    return findInList(copy.get(), fileName, result, size) ? kDone : kFailed;
}

char* SearchEnv(char* element) {
    char* place = element + std::strcspn(element, ":");
    while (place[0] == kSeparator && place[1] == kSeparator) {
        *place++ = '\0';
    }
    return place;
}
