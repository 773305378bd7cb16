#pragma once

#include <functional>
#include <string>

#include "billing/billing_period.h"
#include "periods/staging.h"
#include "session/context.h"

/// The sales documents of Brevant, staged into `TabSourceDocumentsGEST`. Periods offered: kBillingOrIntegratedPeriods.
/// Customers (under basis "F") and taxes must be staged before. Failures are shown through the context's dialogs.
namespace korvel::billing {

/// Who runs the extraction: the form asks "Confirma o Processamento?" first; the wizard's message of an unknown
/// customer shows the tax number. A command is as the form, without the question.
enum class Caller { Form, Command, Wizard };

/// Verifies the period's documents, then replaces its staged rows. Countries missing in the documents are filled in at
/// the source first. False
///  - without a period, when the user declines or cancels, and when a database does not open or fails: the staged
///    rows are as before;
///  - when a document would make a bad file: the rows of the period and its customer are gone;
///  - when a mapped row lacks a value: the rows of the period are gone, those of other customers included.
bool CalcularDocumentos(const session::Context& context, const BillingPeriod& period, Caller caller);

/// The grid `lvwDocumentos` and its staged table.
const periods::StagedTable& DocumentosTable();

/// Takes the next staged row, in the columns of DocumentosTable; may be called very often.
using DocumentRowSink = std::function<void(const periods::GridRow&)>;

/// `cmdVerRegistos`: asks with the count, then hands over the staged rows of the period, all customers', in their
/// order, one at a time: there may be a million of them. The wizard asks nothing. False when the user declines or
/// cancels or the company database fails.
bool VerDocumentos(const session::Context& context, const BillingPeriod& period, const DocumentRowSink& sink,
                   Caller caller = Caller::Form);

/// `cmdGravar`: replaces the period's staged rows by these, in one transaction and without any test. False when there
/// are none or the company database fails; nothing has changed then. This older path knows no `TaxCountryRegion`,
/// `TaxAmount`, `TaxExemptionReason`, `SelfBillingIndicator`, `InvoiceStatus`, `Hash` and `HashControl`: rows saved
/// through it lose them, which is deliberate.
bool GravarDocumentos(const session::Context& context, const BillingPeriod& period,
                      const periods::Grid& rows);

}  // namespace korvel::billing
