#include "platform/PictureLoader.h"

namespace tessaloom {

std::string_view Words(PictureRefusal refusal) {
    switch (refusal) {
        case PictureRefusal::None:
            break;
        case PictureRefusal::NotSupported:
            return "it is not a supported picture";
        case PictureRefusal::Damaged:
            return "it is damaged or cut short";
        case PictureRefusal::TooLarge:
            return "it is too large";
        case PictureRefusal::TooElaborate:
            return "its drawing is too elaborate";
        case PictureRefusal::NamesOtherFiles:
            return "it holds or names other pictures or files";
        case PictureRefusal::DeclaresEntities:
            return "it declares entities";
    }
    return "";
}

}  // namespace tessaloom
