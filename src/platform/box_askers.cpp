#include "platform/box_askers.h"

#include <map>
#include <utility>
#include <vector>

namespace penlog {

namespace {

struct AskerState {
  std::vector<std::string> asking;  // the innermost handler's screen last
  std::map<int, std::string> of;    // by the box's number
};

AskerState state;

}  // namespace

BoxAsker::BoxAsker(std::string screen) {
  state.asking.push_back(std::move(screen));
}

BoxAsker::~BoxAsker() {
  state.asking.pop_back();
}

std::string AskerOfBox(int id) {
  const auto found = state.of.find(id);
  return found == state.of.end() ? std::string() : found->second;
}

void KeepAskerOfBox(int id) {
  if (!state.asking.empty()) state.of[id] = state.asking.back();
}

void ForgetAskerOfBox(int id) {
  state.of.erase(id);
}

void ForgetAskers() {
  state.of.clear();
}

}  // namespace penlog
