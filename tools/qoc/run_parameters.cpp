#include "run_parameters.hpp"

#include "trouble.hpp"

namespace qoc::program {
namespace {

/// Reads one key of the table into the parameters. @return false where the table does not have the key
bool readParameter(const JsonNode &node, const std::string &key, qoc_ocrDictionaryRunParams &params) {
  for (const NumberParameter &parameter : numberParameters) {
    if (key != parameter.key) continue;
    params.*parameter.field = node.integer(0, std::numeric_limits<std::int32_t>::max());
    return true;
  }
  for (const FlagParameter &parameter : flagParameters) {
    if (key != parameter.key) continue;
    params.*parameter.field = node.boolean() ? 1 : 0;
    return true;
  }
  if (key != "ranking") return false;
  const std::string names = "\"edits\", \"primary\" or \"primary-secondary\"";
  if (!setRanking(params, node.string(names))) node.failExpected(names);
  return true;
}

std::string knownKeys() {
  std::string keys;
  for (const NumberParameter &parameter : numberParameters) keys += std::string("\"") + parameter.key + "\", ";
  for (const FlagParameter &parameter : flagParameters) keys += std::string("\"") + parameter.key + "\", ";
  return keys + "\"ranking\"";
}

} // namespace

bool setRanking(qoc_ocrDictionaryRunParams &params, const std::string &name) {
  for (const Ranking &ranking : rankings) {
    if (name != ranking.name) continue;
    params.rankingMode = ranking.mode;
    params.rankingVariant = ranking.variant;
    return true;
  }
  return false;
}

void readRunParameters(const JsonNode &node, qoc_ocrDictionaryRunParams &params) {
  node.requireObject("an object of run parameters");
  for (const auto &[key, unused] : node.value().items()) {
    const JsonNode member = node.member(key);
    if (!readParameter(member, key, params)) member.fail("unknown key; expected one of " + knownKeys());
  }
  check(qoc_ocrDictionaryRunParams_validate(&params), node.where());
}

} // namespace qoc::program
