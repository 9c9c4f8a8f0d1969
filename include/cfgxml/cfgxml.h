/* The whole public interface of libcfgxml.so. */
#ifndef CFGXML_CFGXML_H
#define CFGXML_CFGXML_H

#include <cfgxml/binding.h>
#include <cfgxml/broadsoft.h>
#include <cfgxml/csv.h>
#include <cfgxml/dialrule.h>
#include <cfgxml/history.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/remote.h>
#include <cfgxml/search.h>
#include <cfgxml/timezone.h>
#include <cfgxml/xmlbrowser.h>

#endif
