#pragma once

#include "script/library/ClassLibrary.h"

namespace tessaloom::library {

/// A new "MSXML2.XMLHTTP" or (`forServers`) "MSXML2.ServerXMLHTTP": one http or https request at a time.
///
/// A synchronous Send waits for the answer, within the script's time limit. An asynchronous one goes on
/// whenever a member is used. Nothing is kept between requests: no cookies, no cache. There is no document
/// object: responseXML is Nothing.
vbscript::Ref<vbscript::Object> MakeXmlHttp(const LibraryServices& services, bool forServers);

}  // namespace tessaloom::library
