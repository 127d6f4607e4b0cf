#include <VxUtil/CVXDomain.h>

CVXDomain::CVXDomain(const std::string& domainDBName) : domainDBName_(domainDBName) {}
