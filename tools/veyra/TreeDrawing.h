// Draws the tree of a "TreeModel" element: as indented text, and as a picture for a browser.

#ifndef VEYRA_TOOLS_TREEDRAWING_H_
#define VEYRA_TOOLS_TREEDRAWING_H_

#include <iosfwd>
#include <xercesc/dom/DOMElement.hpp>

namespace VeyraTool {

// How deep a tree is drawn.  What lies deeper is counted, not drawn.
constexpr int kWholeTree = -1;
constexpr int kPictureDepth = 6;  // of a picture unless its reader says otherwise

// A line a node, two blanks a level: the condition, the score, the records.  Levels beyond 40 stand under one
// another and begin with their number.
void DrawTreeAsText(const xercesc::DOMElement& treeModel, int depth, std::ostream& out);

// An SVG document: a box a node, with a bar of the shares of its categories.  The full text of what does not
// fit shows when the pointer rests on the box.
void DrawTreeAsSvg(const xercesc::DOMElement& treeModel, int depth, std::ostream& out);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_TREEDRAWING_H_
