// bench/largestvalue.h - chooses what the benchmarks of the main window click on.
#pragma once

#include "browser/mainform.h"

#include <initializer_list>
#include <string>

namespace bench
{

// The key of the node with the most files in these groups of the tree; empty when they have no
// node. The list is filled by each node of them.
[[nodiscard]] inline std::string LargestValue(browser::MainForm &form,
                                              std::initializer_list<const char *> groups)
{
    std::string largest;
    int files = -1;
    for (const char *group : groups)
        for (const ui::NodeId node : form.TV.Children(form.TV.Find(group))) {
            form.TV.MoveTo(node);
            if (form.LV.Count() > files) {
                files = form.LV.Count();
                largest = form.TV.Key(node);
            }
        }
    return largest;
}

} // namespace bench
