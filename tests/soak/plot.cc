#include "plot.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace {

struct Curve {
  const char* name;
  long Sample::*value;
};

constexpr Curve kCurves[] = {{"resident memory, KiB", &Sample::residentKiB},
                             {"heap in use, KiB", &Sample::heapKiB},
                             {"descriptors", &Sample::descriptors},
                             {"threads", &Sample::threads},
                             {"child processes", &Sample::children}};
constexpr int kLeft = 190;
constexpr int kWidth = 500;
constexpr int kHeight = 70;
constexpr int kStep = kHeight + 30;

void drawPanel(std::ostream& out, const std::vector<Sample>& samples, const Curve& curve, int top) {
  long most = 1;
  for (const Sample& sample : samples) {
    most = std::max(most, sample.*curve.value);
  }
  out << "<text x=\"10\" y=\"" << top + kHeight / 2 << "\">" << curve.name << "</text>\n"
      << "<text x=\"" << kLeft - 5 << "\" y=\"" << top + 10 << "\" text-anchor=\"end\">" << most
      << "</text>\n<text x=\"" << kLeft - 5 << "\" y=\"" << top + kHeight
      << "\" text-anchor=\"end\">0</text>\n<path d=\"M" << kLeft << ' ' << top << "v" << kHeight
      << "h" << kWidth << "\" stroke=\"#999\"/>\n<polyline stroke=\"#06c\" points=\"";
  for (const Sample& sample : samples) {
    char point[64];
    std::snprintf(
        point, sizeof point, "%.1f,%.1f ",
        kLeft + 1.0 * kWidth * static_cast<double>(sample.lookups) /
                    static_cast<double>(samples.back().lookups),
        top + kHeight -
            1.0 * kHeight * static_cast<double>(sample.*curve.value) / static_cast<double>(most));
    out << point;
  }
  out << "\"/>\n";
}

}  // namespace

std::string plotOf(const std::vector<Sample>& samples) {
  std::ostringstream out;
  int top = 20;
  out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"710\" height=\"530\" fill=\"none\">\n"
      << "<rect width=\"710\" height=\"530\" fill=\"#fff\"/>\n"
      << "<g font-family=\"sans-serif\" font-size=\"12\" stroke-width=\"1\">\n"
      << "<style>text { fill: #333 }</style>\n";
  for (const Curve& curve : kCurves) {
    drawPanel(out, samples, curve, top);
    top += kStep;
  }
  out << "<text x=\"" << kLeft + kWidth << "\" y=\"" << top << "\" text-anchor=\"end\">"
      << samples.back().lookups << " lookups</text>\n</g>\n</svg>\n";
  return out.str();
}
