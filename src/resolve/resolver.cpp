// The resolver: its life, its rules and what it knows of the dictionary. Resolving is in resolver_resolve.cpp.

#include <qoc/resolver.h>

#include "frame/frame.hpp"
#include "resolve/knowledge.hpp"

using namespace qoc;

namespace {

SharedKnowledge knowledgeOf(const qoc_ocrDictionaryResolver &resolver) {
  return resolver.knowledge != nullptr ? *static_cast<const SharedKnowledge *>(resolver.knowledge) : nullptr;
}

/// Puts new knowledge in place of what was there.
void setKnowledge(qoc_ocrDictionaryResolver &resolver, const SharedKnowledge &knowledge) {
  auto *shared = knowledge ? new SharedKnowledge(knowledge) : nullptr;
  delete static_cast<SharedKnowledge *>(resolver.knowledge);
  resolver.knowledge = shared;
}

}  // namespace

qsys_status qoc_ocrDictionaryResolver_construct(qoc_ocrDictionaryResolver *resolver) {
  if (!present({resolver})) {
    return QSYS_STATUS_OK;
  }
  resolver->knowledge = nullptr;
  return qoc_ocrDictionaryResolverRules_construct(&resolver->rules);
}

qsys_status qoc_ocrDictionaryResolver_constructCopy(qoc_ocrDictionaryResolver *resolver,
                                                    const qoc_ocrDictionaryResolver *source) {
  return constructThenAssign<qoc_ocrDictionaryResolver_construct, qoc_ocrDictionaryResolver_assign,
                             qoc_ocrDictionaryResolver_destruct>(resolver, source);
}

qsys_status qoc_ocrDictionaryResolver_assign(qoc_ocrDictionaryResolver *resolver,
                                             const qoc_ocrDictionaryResolver *source) {
  if (!present({resolver, source}) || resolver == source) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryResolverRules_assign(&resolver->rules, &source->rules));
    setKnowledge(*resolver, knowledgeOf(*source));
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryResolver_destruct(qoc_ocrDictionaryResolver *resolver) {
  if (!present({resolver})) {
    return QSYS_STATUS_OK;
  }
  delete static_cast<SharedKnowledge *>(resolver->knowledge);
  resolver->knowledge = nullptr;
  return qoc_ocrDictionaryResolverRules_destruct(&resolver->rules);
}

qsys_status qoc_ocrDictionaryResolver_setRules(qoc_ocrDictionaryResolver *resolver,
                                               const qoc_ocrDictionaryResolverRules *rules) {
  if (!present({resolver, rules})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResolverRules_validate(rules));
  return qoc_ocrDictionaryResolverRules_assign(&resolver->rules, rules);
}

qsys_status qoc_ocrDictionaryResolver_getRules(const qoc_ocrDictionaryResolver *resolver,
                                               qoc_ocrDictionaryResolverRules *rules) {
  if (!present({resolver, rules})) {
    return QSYS_STATUS_OK;
  }
  return qoc_ocrDictionaryResolverRules_assign(rules, &resolver->rules);
}

qsys_status qoc_ocrDictionaryResolver_setDictionary(qoc_ocrDictionaryResolver *resolver,
                                                    const qoc_ocrDictionary *dictionary) {
  if (!present({resolver})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    if (dictionary == nullptr) {
      setKnowledge(*resolver, nullptr);
      return QSYS_STATUS_OK;
    }
    const auto knowledge = std::make_shared<Knowledge>();
    QOC_TRY(knowledge->take(*dictionary));
    setKnowledge(*resolver, knowledge);
    return QSYS_STATUS_OK;
  });
}
