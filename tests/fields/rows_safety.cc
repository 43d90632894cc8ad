// Rows of the security service.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow SafetyVyrSafetyVyrEnbl() {
  return {
      .name = "SafetyVyr_SafetyVyrEnbl",
      .section = SectionId::kSafety,
      .field = "SafetyVyrEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.safetyVyr.safetyVyrEnbl); },
      .node = "/safetyvyr/safetyvyrenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "0"}, {kAbsent, "0"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/SafetyVyr/SafetyVyrEnbl",
          .missing = "Device/SafetyVyr/SafetyVyrEnbl",
          .fault = "Device/SafetyVyr/SafetyVyrEnbl",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/safetyvyr/safetyvyrenbl=0"},
      }},
      .dump = "     +- SafetyVyrEnbl=1",
      .variables = {{
          .name = "rss_Vyr_SafetyVyrEnbl",
          .path = "/safetyvyr/SafetyVyrEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.safetyVyr.safetyVyrEnbl = 0; },
          .read_back = "0",
          .refused = {{"2", 2}, {"-1", 2}, {"10", 2}},
          .stored_empty = [](RssXmlData& r) { r.safetyVyr.safetyVyrEnbl = 0; },
      }},
  };
}

FieldRow SafetyVyrUrlDetectEnbl() {
  return {
      .name = "SafetyVyr_UrlDetectEnbl",
      .section = SectionId::kSafety,
      .field = "UrlDetectEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.safetyVyr.urlDetectEnbl); },
      .node = "/safetyvyr/urldetectenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0", "0"}, {"1", "1"}, {"2", "0"}, {kAbsent, "0"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/SafetyVyr/UrlDetectEnbl",
          .missing = "Device/SafetyVyr/UrlDetectEnbl",
          .fault = "Device/SafetyVyr/UrlDetectEnbl",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "1",
          .writes = {"/safetyvyr/urldetectenbl=1"},
      }},
      .dump = "     +- UrlDetectEnbl=0",
      .variables = {{
          .name = "rss_Vyr_UrlDetectEnbl",
          .path = "/safetyvyr/UrlDetectEnbl",
          .text = "0",
          .value = "1",
          .stored = [](RssXmlData& r) { r.safetyVyr.urlDetectEnbl = 1; },
          .read_back = "1",
          .refused = {{"2", 2}, {"-1", 2}, {"10", 2}},
          .stored_empty = [](RssXmlData& r) { r.safetyVyr.urlDetectEnbl = 0; },
      }},
  };
}

FieldRow SafetyVyrSafetyNotifyEnbl() {
  return {
      .name = "SafetyVyr_SafetyNotifyEnbl",
      .section = SectionId::kSafety,
      .field = "SafetyNotifyEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.safetyVyr.safetyNotifyEnbl); },
      .node = "/safetyvyr/safetynotifyenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "0"}, {kAbsent, "0"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/SafetyVyr/SafetyNotifyEnbl",
          .missing = "Device/SafetyVyr/SafetyNotifyEnbl",
          .fault = "Device/SafetyVyr/SafetyNotifyEnbl",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/safetyvyr/safetynotifyenbl=0"},
      }},
      .dump = "     +- SafetyNotifyEnbl=1",
      .variables = {{
          .name = "rss_Vyr_SafetyNotifyEnbl",
          .path = "/safetyvyr/SafetyNotifyEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.safetyVyr.safetyNotifyEnbl = 0; },
          .read_back = "0",
          .refused = {{"2", 2}, {"-1", 2}, {"10", 2}},
          .stored_empty = [](RssXmlData& r) { r.safetyVyr.safetyNotifyEnbl = 0; },
      }},
  };
}

FieldRow SafetyVyrToolRecommendEnbl() {
  return {
      .name = "SafetyVyr_ToolRecommendEnbl",
      .section = SectionId::kSafety,
      .field = "ToolRecommendEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.safetyVyr.toolRecommendEnbl); },
      .node = "/safetyvyr/toolrecommendenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0", "0"}, {"1", "1"}, {"2", "0"}, {kAbsent, "0"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/SafetyVyr/ToolRecommendEnbl",
          .missing = "Device/SafetyVyr/ToolRecommendEnbl",
          .fault = "Device/SafetyVyr/ToolRecommendEnbl",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "1",
          .writes = {"/safetyvyr/toolrecommendenbl=1"},
      }},
      .dump = "     +- ToolRecommendEnbl=0",
      .variables = {{
          .name = "rss_Vyr_ToolRecommendEnbl",
          .path = "/safetyvyr/ToolRecommendEnbl",
          .text = "0",
          .value = "1",
          .stored = [](RssXmlData& r) { r.safetyVyr.toolRecommendEnbl = 1; },
          .read_back = "1",
          .refused = {{"2", 2}, {"-1", 2}, {"10", 2}},
          .stored_empty = [](RssXmlData& r) { r.safetyVyr.toolRecommendEnbl = 0; },
      }},
  };
}

}  // namespace

std::vector<FieldRow> SafetyRows() {
  return {
      SafetyVyrSafetyVyrEnbl(),
      SafetyVyrUrlDetectEnbl(),
      SafetyVyrSafetyNotifyEnbl(),
      SafetyVyrToolRecommendEnbl(),
  };
}

}  // namespace kio::test
