#include "forms/enlarged_graph_form.h"

namespace penlog {

EnlargedGraphForm::EnlargedGraphForm() : Form("EnlargedGraph", "ENLARGED GRAPH") {
  Hold(frmKey1, {&lblKeya, &lblKeyb, &lblKeyc});
  Hold(frmSetXAxis, {&lblXmin, &txtXmin, &lblXmax, &txtXmax, &cmdOK, &cmdResetScale});
  frmKey1.Visible = false;
  frmSetXAxis.Visible = false;
  lblGraphValue.ForeColor = kWhite;
  lblGraphValue.BackColor = kBlack;
  KeepFirstValues();
}

}  // namespace penlog
