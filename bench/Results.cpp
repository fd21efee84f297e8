#include "bench/Results.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

namespace kartix::bench {
namespace {

std::string rounded(double value) {
  std::ostringstream text;
  text.precision(value < 10 ? 2 : 0);
  text << std::fixed << value;
  return text.str();
}

/// "0.93 times, at most 1.20".
std::string figures(const Result& result) {
  if (result.is < 0) return "not measured";
  return rounded(result.is) + (result.unit.empty() ? "" : " " + result.unit) + ", at most " + rounded(result.most);
}

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) safe += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  return safe;
}

/// A bar a line: what was measured as a part of what is allowed, which is the line on the right.
std::string picture(const std::vector<Result>& results) {
  constexpr int line = 22;
  constexpr int left = 470;
  constexpr int allowed = 300;
  constexpr int width = 1000;
  constexpr double longest = 1.15;
  const int height = line * (static_cast<int>(results.size()) + 2);
  std::ostringstream svg;
  svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\"" << height
      << "\" font-family=\"sans-serif\" font-size=\"12\">\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  int top = line;
  for (const Result& result : results) {
    const double part = std::clamp(result.is / result.most, 0.0, longest);
    svg << "<text x=\"" << left - 8 << "\" y=\"" << top + 13 << "\" text-anchor=\"end\">" << escaped(result.what)
        << "</text>\n<rect x=\"" << left << "\" y=\"" << top + 2 << "\" height=\"" << line - 6 << "\" width=\""
        << static_cast<int>(part * allowed) << "\" fill=\"" << (result.reached() ? "#3b7dbd" : "#c0392b")
        << "\"/>\n<text x=\"" << left + static_cast<int>(longest * allowed) + 8 << "\" y=\"" << top + 13 << "\">"
        << figures(result) << "</text>\n";
    top += line;
  }
  svg << "<line x1=\"" << left + allowed << "\" x2=\"" << left + allowed << "\" y1=\"" << line / 2 << "\" y2=\""
      << top + line / 2 << "\" stroke=\"#333\" stroke-dasharray=\"4 3\"/>\n</svg>\n";
  return svg.str();
}

}  // namespace

void print(const std::vector<Result>& results) {
  std::printf("\n%-66s %8s %8s\n", "", "is", "at most");
  for (const Result& result : results) {
    const std::string is = result.is < 0 ? "-" : rounded(result.is);
    const char* const verdict = result.is < 0 ? "NOT MEASURED" : result.reached() ? "" : "MISSED";
    std::printf("%-66s %8s %8s %s %s\n", result.what.c_str(), is.c_str(), rounded(result.most).c_str(),
                result.unit.c_str(), verdict);
  }
}

void write(const std::vector<Result>& results, const std::filesystem::path& folder) {
  nlohmann::ordered_json all = nlohmann::ordered_json::array();
  for (const Result& result : results) {
    all.push_back({{"what", result.what},
                   {"is", result.is < 0 ? nlohmann::ordered_json() : nlohmann::ordered_json(result.is)},
                   {"atMost", result.most},
                   {"unit", result.unit},
                   {"reached", result.reached()}});
  }
  std::ofstream(folder / "results.json") << all.dump(2) << '\n';
  std::ofstream(folder / "results.svg") << picture(results);
}

}  // namespace kartix::bench
