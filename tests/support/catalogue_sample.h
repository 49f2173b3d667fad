#pragma once
// A catalogue of any size, as a serializer writes it: elements in alphabetical order, so that a shorter name
// stands ahead of the longer ones that begin with it; absent texts as nil elements. The same size gives the
// same text every time.

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tarnwick::tests {

enum class SampleStyle {
  kSparse,  // two elements in five are nil, as games without 32-bit and 64-bit variants have them
  kFull,    // every element has a text
  kRough,   // as kFull, and every text but the source has a reference, an accent and blanks to collapse
};

class CatalogueSample {
 public:
  CatalogueSample(int records, SampleStyle style) : style_(style) {
    text_ =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ArrayOfGameSignature "
        "xmlns:i=\"http://www.w3.org/2001/XMLSchema-instance\">\n";
    for (int i = 0; i < records; ++i) Record(i);
    text_ += "</ArrayOfGameSignature>\n";
  }

  const std::string& text() const { return text_; }

 private:
  void Record(int number) {
    const std::string name = Name(number);
    const std::string id = std::to_string(10000 + number * 7);
    text_ += "<GameSignature>";
    Element("DefaultExe", name + ".exe");
    Element("DefaultExe32", Sometimes() ? name + "32.exe" : "");
    Element("DefaultExe64", Sometimes() ? name + "64.exe" : "");
    Element("DefaultFolder", "%PROGRAMFILES%\\" + name);
    Element("DefaultFolder32", Sometimes() ? "%PROGRAMFILES%\\" + name : "");
    Element("DefaultFolder64", Sometimes() ? "%PROGRAMFILES(X86)%\\" + name : "");
    Element("DefaultFolderExe", "bin\\" + name + ".exe|" + name + ".exe");
    Element("DefaultFolderExe32", Sometimes() ? "bin\\x86\\" + name + ".exe" : "");
    Element("DefaultFolderExe64", Sometimes() ? "bin\\x64\\" + name + ".exe" : "");
    Element("DisplayName", name + (number % 10 == 0  ? " &amp; Friends"
                                   : number % 9 == 0 ? " \xE2\x84\xA2"
                                                     : ""));
    Element("GameGUID",
            Sometimes() ? "3f2504e0-4f89-11d3-9a0c-0305e82c" + std::to_string(1000 + number % 9000) : "");
    Element("GameInfo", Sometimes() ? "Publisher." + name + "_8wekyb3d8bbwe" : "");
    Element("LaunchUrl", Sometimes() ? "steam://run/" + id : "");
    Element("RegistryKey", "HKEY_LOCAL_MACHINE\\SOFTWARE\\" + name);
    Element("RegistryPathKeyName", "InstallLocation");
    Element("RunningExe", Sometimes() ? "bin\\" + name + ".exe" : "");
    Element("SourceEx", kSources[random_() % std::size(kSources)]);
    Element("SourceExId", id);
    text_ += "</GameSignature>\n";
  }

  void Element(std::string_view name, std::string_view value) {
    const bool rough = style_ == SampleStyle::kRough && name != "SourceEx";
    text_.append("<").append(name);
    if (value.empty()) {
      text_ += " i:nil=\"true\"/>";
    } else {
      text_.append(">")
          .append(value)
          .append(rough ? " &amp;  \xC3\xA9\n" : "")
          .append("</")
          .append(name)
          .append(">");
    }
  }

  bool Sometimes() { return style_ != SampleStyle::kSparse || random_() % 3 == 0; }

  std::string Name(int number) {
    std::string name = kWords[random_() % std::size(kWords)];
    for (auto more = random_() % 3; more > 0; --more)
      name.append(" ").append(kWords[random_() % std::size(kWords)]);
    return name + " " + std::to_string(number);
  }

  static constexpr const char* kWords[] = {"Storm", "Lantern", "Harbour", "Iron",   "Meadow", "Quest",
                                           "Tower", "Echo",    "Star",    "Winter", "Crown",  "Hunt",
                                           "River", "Ember",   "Knight",  "Tale"};
  static constexpr const char* kSources[] = {"Steam",  "Epic",      "GOG", "Uplay",
                                             "Origin", "BattleNet", "UWP", "Direct"};

  SampleStyle style_;
  std::string text_;
  std::mt19937 random_{20240229};
};

}  // namespace tarnwick::tests
