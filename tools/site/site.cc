#include "site.h"

#include <json/reader.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace quilp_site {
namespace {

struct Fault {
  const char* name;
  void (*apply)(Reply& reply);
};

std::string everyByte() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

constexpr Fault kFaults[] = {
    {"fault500", [](Reply& reply) { reply = Reply(500, "<p>Something broke.</p>"); }},
    {"fault503", [](Reply& reply) { reply = Reply(503, "<p>Too many requests.</p>"); }},
    {"faultempty", [](Reply& reply) { reply.body.clear(); }},
    {"faultcut", [](Reply& reply) { reply.body.resize(reply.body.size() / 2); }},
    {"faultbinary", [](Reply& reply) { reply.body = everyByte() + reply.body + everyByte(); }},
    {"faultbig", [](Reply& reply) { reply.body.insert(0, 5 << 20, '.'); }},
    {"faultclosed", [](Reply& reply) { reply.closes_half_way = true; }},
    {"faultmoved", [](Reply& reply) { reply.status = 302; }},
};

// Answers of a site that serves no programs. No search finds titles with these.
constexpr Fault kRefusals[] = {
    {"fault403", [](Reply& reply) { reply = Reply(403, "<p>Forbidden.</p>"); }},
    {"fault202",
     [](Reply& reply) {
       reply = Reply(202, "<p>Prove that you are a browser.</p>");
       reply.challenges = true;
     }},
};

// Takes the name of one of `faults`, and what separates it from the rest, out of the text.
template <size_t N>
const Fault* takeOneOf(const Fault (&faults)[N], std::string& text) {
  for (const Fault& fault : faults) {
    const size_t start = text.find(fault.name);
    if (start == std::string::npos) {
      continue;
    }
    text.erase(start, std::strlen(fault.name));
    for (const char* separator : {"-", " ", "%20"}) {
      if (text.compare(start, std::strlen(separator), separator) == 0) {
        text.erase(start, std::strlen(separator));
        break;
      }
    }
    return &fault;
  }
  return nullptr;
}

const Fault* takeFault(std::string& text) {
  const Fault* fault = takeOneOf(kFaults, text);
  return fault ? fault : takeOneOf(kRefusals, text);
}

std::set<std::string> words(const std::string& text) {
  static const std::regex reference("&#?[A-Za-z0-9]+;");
  std::string plain = std::regex_replace(text, reference, " ");
  std::set<std::string> words;
  std::string word;
  for (char c : plain + ' ') {
    bool upper = c >= 'A' && c <= 'Z';
    if (upper || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
        static_cast<unsigned char>(c) >= 0x80) {
      word += static_cast<char>(upper ? c - 'A' + 'a' : c);
    } else if (!word.empty()) {
      words.insert(std::exchange(word, ""));
    }
  }
  return words;
}

}  // namespace

std::string Request::parameter(const std::string& name) const {
  auto found = query.find(name);
  return found == query.end() ? "" : found->second;
}

void Site::serve(std::string host, const std::string& path_pattern, Page page) {
  routes_.push_back({std::move(host), std::regex(path_pattern), std::move(page)});
}

Reply Site::answer(Request request) const {
  const Fault* fault = takeFault(request.path);
  for (auto& [name, value] : request.query) {
    const Fault* found = takeFault(value);
    fault = found ? found : fault;
  }
  Reply reply = find(request).value_or(Reply(404, "<p>There is no such page.</p>\n"));
  if (fault) {
    takeFault(request.target);
    reply.location = "https://" + request.host + request.target;
    fault->apply(reply);
  }
  return reply;
}

Site::Body Site::find(Request& request) const {
  for (const Route& route : routes_) {
    std::smatch match;
    if (route.host == request.host && std::regex_match(request.path, match, route.path)) {
      request.id = match.size() > 1 ? match[1].str() : "";
      if (Body page = route.page(request)) {
        return page;
      }
    }
  }
  return std::nullopt;
}

std::vector<std::string> faultNames() {
  std::vector<std::string> names;
  for (const Fault& fault : kFaults) {
    names.emplace_back(fault.name);
  }
  return names;
}

std::string readFile(const std::string& name) {
  std::ifstream file(std::string(QUILP_SITE_DATA) + "/" + name);
  if (!file) {
    throw std::runtime_error("no file " + name);
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

Json::Value parseJson(const std::string& text) {
  Json::Value value;
  std::istringstream stream(text);
  stream >> value;
  return value;
}

std::string fill(const std::string& text, const Json::Value& values) {
  // Where the text goes on after the mark that ends at `end`.
  auto after = [&text](size_t mark, size_t end) {
    bool alone = (mark == 0 || text[mark - 1] == '\n') && text[end] == '\n';
    return end + (alone ? 1 : 0);
  };
  std::string filled;
  size_t from = 0;
  for (size_t open; (open = text.find("{{", from)) != std::string::npos;) {
    filled += text.substr(from, open - from);
    from = text.find("}}", open) + 2;
    std::string name = text.substr(open + 2, from - open - 4);
    if (name[0] != '#') {
      filled += values.get(name, "").asString();
      continue;
    }
    name.erase(0, 1);
    const std::string closing = "{{/" + name + "}}";
    const size_t close = text.find(closing, from);
    from = after(open, from);
    const std::string inner = text.substr(from, close - from);
    from = after(close, close + closing.size());
    const Json::Value& member = values[name];
    if (member.isString()) {
      filled += fill(inner, values);
    }
    for (Json::ArrayIndex i = 0; member.isArray() && i < member.size(); ++i) {
      Json::Value item = values;
      for (const std::string& key :
           member[i].isObject() ? member[i].getMemberNames() : Json::Value::Members()) {
        item[key] = member[i][key];
      }
      item["."] = member[i].isString() ? member[i] : "";
      item["n"] = i + 1;
      filled += fill(inner, item);
    }
  }
  return filled + text.substr(from);
}

bool hasWords(const std::string& title, const std::string& query) {
  std::set<std::string> has = words(title);
  std::set<std::string> wanted = words(query);
  return !wanted.empty() && std::includes(has.begin(), has.end(), wanted.begin(), wanted.end());
}

}  // namespace quilp_site
