// The facade's operations over the web filter.

#include "wexpol/policydb/facade.h"
#include "wexpol/records/document.h"
#include "wexpol/webfilter/category.h"
#include "wexpol/webfilter/filter_category.h"
#include "wexpol/webfilter/filter_proxy_port.h"
#include "wexpol/webfilter/filter_setting.h"
#include "wexpol/webfilter/filter_url.h"
#include "wexpol/webfilter/filter_url_document.h"
#include "wexpol/webfilter/icat_keyword.h"
#include "wexpol/webfilter/never_block_app.h"
#include "wexpol/webfilter/never_block_domain.h"
#include "wexpol/webfilter/proxy_port.h"
#include "wexpol/webfilter/safe_search_parameter.h"
#include "wexpol/webfilter/swg_settings.h"

bool CPolicyDB::ClearAndAddCategories(const char* json) { return ClearAndAdd<CCategory>(json); }
bool CPolicyDB::GetCategories(std::list<CCategory*>& out, const char* column, long value) {
  return List(out, column, value);
}
bool CPolicyDB::AnyMoviesAndTvCategories(const std::set<std::wstring>& names) {
  return wexpol::Ask([&] { return CCategory::AnyMoviesAndTvCategories(handle(), names); });
}
bool CPolicyDB::IsPornCategoryPresent(const std::set<std::wstring>& names) {
  return wexpol::Ask([&] { return CCategory::IsPornCategoryPresent(handle(), names); });
}
bool CPolicyDB::GetNoCacheCategories(std::string& out) {
  return wexpol::Ask([&] { return CCategory::GetNoCacheCategories(out, handle()); });
}

bool CPolicyDB::AddFilterSettings(const char* json) { return Add<CFilterSetting>(json); }
bool CPolicyDB::ClearFilters() { return Clear<CFilterSetting>(); }
bool CPolicyDB::GetFilterSettings(std::list<CFilterSetting*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddFilterUrls(const char* json) { return Add<CFilterUrl>(json); }
bool CPolicyDB::ClearFilterUrls() { return Clear<CFilterUrl>(); }
bool CPolicyDB::GetFilterUrls(std::list<CFilterUrl*>& out, const char* column, long value) {
  return List(out, column, value);
}
bool CPolicyDB::AddFilterUrl(CFilterUrl* url, const char* json) {
  return wexpol::AskAndTell(m_error,
                            [&] { return wexpol::AddFilterUrl(handle(), url, json, m_error); });
}

bool CPolicyDB::AddFilterCategories(const char* json) { return Add<CFilterCategory>(json); }
bool CPolicyDB::ClearFilterCategories() { return Clear<CFilterCategory>(); }
bool CPolicyDB::GetFilterCategories(std::list<CFilterCategory*>& out, const char* column,
                                    long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddFilterProxyPorts(const char* json) { return Add<CFilterProxyPort>(json); }
bool CPolicyDB::ClearFilterProxyPorts() { return Clear<CFilterProxyPort>(); }
bool CPolicyDB::ClearAndAddProxyPorts(const char* json) { return ClearAndAdd<CProxyPort>(json); }
bool CPolicyDB::GetProxyPorts(std::list<CProxyPort*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::ClearAndAddSafeSearchParameters(const char* json) {
  return ClearAndAdd<CSafeSearchParameter>(json);
}
bool CPolicyDB::GetSafeSearchParameters(std::list<CSafeSearchParameter*>& out, const char*, long) {
  return wexpol::AskAndTell(
      m_error, [&] { return CSafeSearchParameter::SpecialGetFromDB(out, handle(), &m_error); });
}

bool CPolicyDB::ClearAndAddIcatKeywords(const char* json) {
  return ClearAndAdd<CIcatKeyword>(json);
}
bool CPolicyDB::GetIcatKeywords(std::list<CIcatKeyword*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::ClearAndAddNeverBlockApps(const char* json) {
  return ClearAndAdd<CNeverBlockApp>(json);
}
bool CPolicyDB::GetNeverBlockApps(std::list<CNeverBlockApp*>& out, const char* column, long value) {
  return List(out, column, value);
}
bool CPolicyDB::ClearAndAddNeverBlockDomains(const char* json) {
  return ClearAndAdd<CNeverBlockDomain>(json);
}
bool CPolicyDB::GetNeverBlockDomains(std::list<CNeverBlockDomain*>& out, const char* column,
                                     long value) {
  return List(out, column, value);
}

bool CPolicyDB::ClearAndAddSwgSettings(const char* json) { return ClearAndAdd<CSwgSettings>(json); }
bool CPolicyDB::GetSwgSettings(CSwgSettings* record) { return record && ReadFirst(*record); }
