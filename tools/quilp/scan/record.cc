#include "scan/record.h"

#include "lookup/requests.h"
#include "scan/limited.h"
#include "scan/source.h"
#include "text/entities.h"

namespace quilp {
namespace {

using libquilp::Values;

template <class Members, void (*Free)(Members*)>
Record read(const libquilp::RecordRequest<Members>& request, const Values& values) {
  Limited limited;
  libquilp::Owned<Members, Free> members;
  Record record;
  const libquilp::Answer answer =
      libquilp::run<Members>(request, values, limited.context(), members);
  if (answer.reason != libquilp::Reason::kOk) {
    return record;
  }
  for (const libquilp::Field<Members>& field : request.fields) {
    if (field.text != nullptr) {
      record.add(field.element,
                 members.*field.text != nullptr ? libquilp::decoded(members.*field.text) : "");
      continue;
    }
    const libquilp::Strings& list = members.*field.list;
    for (std::size_t i = 0; i < list.size(); ++i) {
      const std::string value = libquilp::decoded(list[i].c_str());
      if (field.roles == nullptr) {
        record.add(field.element, value);
      } else {
        const libquilp::Strings& roles = members.*field.roles;
        record.addActor({value, i < roles.size() ? libquilp::decoded(roles[i].c_str()) : ""});
      }
    }
  }
  return record;
}

}  // namespace

void Record::add(const std::string& element, const std::string& value) {
  if (!value.empty()) {
    values_.emplace_back(element, value);
  }
}

std::string Record::text(const std::string& element) const {
  for (const auto& [name, value] : values_) {
    if (name == element) {
      return value;
    }
  }
  return {};
}

std::vector<std::string> Record::list(const std::string& element) const {
  std::vector<std::string> found;
  for (const auto& [name, value] : values_) {
    if (name == element) {
      found.push_back(value);
    }
  }
  return found;
}

Record recordOfMovie(const std::string& id) {
  const std::string given = idForLookup(libquilp::kMovieDetails, id);
  return read<velMovieInfo_, velFreeMovieInfo>(libquilp::kMovieDetails,
                                               Values::title(given.c_str()));
}

Record recordOfShow(const std::string& id) {
  const std::string given = idForLookup(libquilp::kShowDetails, id);
  return read<velTVShowInfo, velFreeTVShowInfo>(libquilp::kShowDetails,
                                                Values::title(given.c_str()));
}

Record recordOfEpisode(const std::string& show, int season, int episode) {
  const std::string given = idForLookup(libquilp::kEpisodeDetails, show);
  return read<velTVEpisode, velFreeTVEpisode>(
      libquilp::kEpisodeDetails, Values::ofEpisode(given.c_str(), season, episode, nullptr));
}

}  // namespace quilp
