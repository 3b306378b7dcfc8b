#include "vbscript/Holder.h"

namespace tessaloom::vbscript {

void Holder::Unlink() {
    if (!link_) return;
    *link_ = next_;
    if (next_) next_->link_ = link_;
    link_ = nullptr;
}

void Holders::Add(Holder& holder) {
    holder.Unlink();
    holder.next_ = first_;
    if (first_) first_->link_ = &holder.next_;
    first_ = &holder;
    holder.link_ = &first_;
}

void Holders::DropAll() {
    while (Holder* const holder = first_) {
        holder->Unlink();
        holder->DropValues();
    }
}

}  // namespace tessaloom::vbscript
