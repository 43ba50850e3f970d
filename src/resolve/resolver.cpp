// The resolver: its life, its rules and what it knows of the dictionary. Resolving is in resolver_resolve.cpp.

#include <qoc/resolver.h>

#include "frame/frame.hpp"
#include "resolve/knowledge.hpp"

using namespace qoc;

namespace {

/// Puts what is to be kept in place of what was there.
void keep(qoc_ocrDictionaryResolver &resolver, const Kept &kept) {
  auto *made = kept.dictionary || kept.confusions ? new Kept(kept) : nullptr;
  delete static_cast<Kept *>(resolver.knowledge);
  resolver.knowledge = made;
}

Kept copyOfKept(const qoc_ocrDictionaryResolver &resolver) {
  const Kept *kept = keptBy(resolver);
  return kept != nullptr ? *kept : Kept();
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
  if (!present({resolver, source})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryResolverRules_assign(&resolver->rules, &source->rules));
    keep(*resolver, copyOfKept(*source));
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryResolver_destruct(qoc_ocrDictionaryResolver *resolver) {
  if (!present({resolver})) {
    return QSYS_STATUS_OK;
  }
  delete static_cast<Kept *>(resolver->knowledge);
  resolver->knowledge = nullptr;
  return qoc_ocrDictionaryResolverRules_destruct(&resolver->rules);
}

qsys_status qoc_ocrDictionaryResolver_setRules(qoc_ocrDictionaryResolver *resolver,
                                               const qoc_ocrDictionaryResolverRules *rules) {
  if (!present({resolver, rules})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResolverRules_validate(rules));
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    Kept kept = copyOfKept(*resolver);
    kept.confusions = rules->confusions.core.size > 0 ? std::make_shared<const Confusions>(*rules) : nullptr;
    QOC_TRY(qoc_ocrDictionaryResolverRules_assign(&resolver->rules, rules));
    keep(*resolver, kept);
    return QSYS_STATUS_OK;
  });
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
    Kept kept = copyOfKept(*resolver);
    kept.dictionary = nullptr;
    if (dictionary != nullptr) {
      const auto knowledge = std::make_shared<Knowledge>();
      QOC_TRY(knowledge->take(*dictionary));
      kept.dictionary = knowledge;
    }
    keep(*resolver, kept);
    return QSYS_STATUS_OK;
  });
}
