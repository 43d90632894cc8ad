// strstri against strcasestr of the C library.
#include <cstdio>
#include <cstring>

#include "figures.h"
#include "toolkit_reader.h"

namespace kio::bench {
namespace {

struct Case {
  std::string name;
  std::string haystack;
  std::string needle;
};

// Shorter texts have no limit.
constexpr std::size_t kShortest = 1024;

double g_worst_in_document = 0;
double g_worst_in_one_letter = 0;

// The full document, cut or repeated to the size.
std::string Haystack(std::size_t size) {
  static const std::string document = ReadFile(KIO_SAMPLE_DOCUMENTS "/full.xml");
  std::string text;
  while (text.size() < size) {
    text += document;
  }
  text.resize(size);
  return text;
}

std::vector<Case> DocumentCases() {
  std::vector<Case> cases;
  for (const std::size_t size : {std::size_t{64}, std::size_t{256}, std::size_t{1024},
                                 std::size_t{8192}, std::size_t{65536}}) {
    const std::string text = Haystack(size);
    const std::string suffix = " in " + std::to_string(size);
    cases.push_back({"first character" + suffix, text, text.substr(0, 1)});
    cases.push_back({"first word" + suffix, text, text.substr(0, 5)});
    cases.push_back({"<root>" + suffix, text, "<ROOT>"});
    cases.push_back({"tag in the middle" + suffix,
                     text.substr(0, size / 2) + "<Tag>" + text.substr(size / 2), "<tag>"});
    cases.push_back({"tag at the end" + suffix, text + "</Last>", "</last>"});
    cases.push_back({"absent tag" + suffix, text, "<NoSuchTag>"});
    cases.push_back({"absent closing tag" + suffix, text, "</NoSuchTag>"});
    cases.push_back({"absent letter" + suffix, text, "#"});
    cases.push_back({"absent common start" + suffix, text, "e#"});
    cases.push_back({"two letters" + suffix, text, "zq"});
    cases.push_back({"word of letters" + suffix, text, "Active!"});
    cases.push_back({"absent long" + suffix, text,
                     "<AcRule>\n     <Active>1</Active>\n     <MAC>02:00:5E:99:99:99</MAC>"});
    cases.push_back({"one blank" + suffix, text, "  !"});
    cases.push_back(
        {"longer than the text" + suffix, text.substr(0, 40), text.substr(0, 40) + "more"});
  }
  return cases;
}

std::vector<Case> OneLetterCases() {
  const std::string text(std::size_t{64} * 1024, 'a');
  std::vector<Case> cases;
  cases.push_back({"absent letter in a run", text, "b"});
  for (const std::size_t size : {2, 3, 4, 8, 16, 32, 63, 64}) {
    const std::string suffix = " of " + std::to_string(size) + " in a run";
    std::string needle(size, 'a');
    needle[0] = 'b';
    cases.push_back({"other letter at the start" + suffix, text, needle});
    needle[0] = 'a';
    needle[size / 2] = 'b';
    cases.push_back({"other letter in the middle" + suffix, text, needle});
    needle[size / 2] = 'a';
    needle[size - 1] = 'B';
    cases.push_back({"other letter at the end" + suffix, text, needle});
    cases.push_back({"the letter itself" + suffix, text, std::string(size, 'A')});
  }
  return cases;
}

void Compare(benchmark::State& state, const Case& search, double limit, double* worst) {
  const char* const haystack = search.haystack.c_str();
  const char* const needle = search.needle.c_str();
  const char* const hit = kLibraryToolkit.strstri(haystack, needle);
  if (hit != strcasestr(haystack, needle)) {
    std::fprintf(stderr, "%s: strstri and strcasestr differ\n", search.name.c_str());
    std::exit(1);
  }
  const Pair pair = MeasurePair(
      state, [&] { benchmark::DoNotOptimize(kLibraryToolkit.strstri(haystack, needle)); },
      [&] { benchmark::DoNotOptimize(strcasestr(haystack, needle)); });
  // A needle that is longer than the text is not searched for: both functions only compare lengths.
  // In a short text the call itself takes longer than the search.
  if (search.needle.size() > search.haystack.size() || search.haystack.size() < kShortest) {
    AddFigure({"strstri: " + search.name, pair.ratio, "x strcasestr"});
    return;
  }
  *worst = std::max(*worst, pair.ratio);
  if (pair.ratio > limit) {
    AddFigure({"strstri: " + search.name, pair.ratio, "x strcasestr", Bound::kAtMost, limit});
  }
}

void Register(const std::vector<Case>& cases, double limit, double* worst) {
  for (const Case& search : cases) {
    RegisterPaired("strstri/" + search.name, [search, limit, worst](benchmark::State& state) {
      Compare(state, search, limit, worst);
    });
  }
}

void AddWorst(benchmark::State& state) {
  for (auto round : state) {
    static_cast<void>(round);
  }
  AddFigure({"strstri: worst needle in a document", g_worst_in_document, "x strcasestr",
             Bound::kAtMost, 0.6});
  AddFigure({"strstri: worst needle in 64 KiB of one letter", g_worst_in_one_letter, "x strcasestr",
             Bound::kAtMost, 1.0});
}

}  // namespace

void RegisterSearch() {
  Register(DocumentCases(), 0.6, &g_worst_in_document);
  Register(OneLetterCases(), 1.0, &g_worst_in_one_letter);
  benchmark::RegisterBenchmark("strstri/worst", AddWorst)->Iterations(1);
}

}  // namespace kio::bench
