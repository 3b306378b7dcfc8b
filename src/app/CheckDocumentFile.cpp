#include <iostream>

#include "app/Commands.h"
#include "core/modNumbers.h"
#include "model/DocumentCheck.h"
#include "platform/Platform.h"

namespace tessaloom {

int CheckDocumentFile(Platform& platform, const std::string& file) {
    modNumbers::InitNumberFormat(platform.locale);
    const std::vector<DocumentFault> faults = CheckDocument(platform, file);
    for (const DocumentFault& fault : faults) std::cout << fault.Text() << '\n';
    return faults.empty() ? ExitStatus::Success : ExitStatus::Failure;
}

}  // namespace tessaloom
