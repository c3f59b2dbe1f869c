#pragma once

#include "bench/cheque_forms.h"

#include <vector>

/// The same texts, made of plain values without any rule of the cheque: what is left is the price of the library that
/// makes the XML. A peer of the form `accrual` is called `accrual:<how it is made>`.
///
/// `bare_dom` is the tree built through `QDomDocument` and written by its `toString`: the floor under a client whose
/// operations pass such documents on. `bare_dom_copied` builds the tree, copies it whole into a second document and
/// writes that: the floor under the accrual, which is made of a cheque that has to stay untouched.
[[nodiscard]] const std::vector<ChequeForm>& domPeers();

/// The ordinary cheque written without a tree of Qt: by `QXmlStreamWriter`, by a tree of pugixml, whose UTF-8 is turned
/// into the text that a request needs, and by joining the pieces of one text: what the characters alone cost.
[[nodiscard]] const std::vector<ChequeForm>& writerPeers();
