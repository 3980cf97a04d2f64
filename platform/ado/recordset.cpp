// Recordset and Field with ADO's semantics over a provider's cursor.
//
// Two kinds of recordset:
// - a server-side forward-only one streams rows from its cursor as it moves
//   (RecordCount -1). It is read-only here, and cannot move backwards;
//   MoveFirst stays put on the first row and otherwise runs the query again,
//   as ADO lets a provider do for forward-only cursors.
// - every other one (client-side, or server-side keyset/static/dynamic)
//   holds its rows in a RowStore. It reads them all when it opens, except
//   over a cursor that reads again cheaply: then it reads the first row
//   only, and the rest when it moves, searches, filters, counts or changes
//   a row, or before anything else changes the database through its
//   connection. Adding rows does not need the others, so a recordset opened
//   on a large table only to add rows to it never holds that table. The
//   rest is read by running the query again and leaving out the rows read
//   or added before; since nothing else changed the database in between,
//   the rows are those the query gave when it opened.
//
// Edits follow ADO's immediate update mode: setting a field starts an edit
// of the current row, AddNew starts a new row that is current until it is
// written; Update writes it through to the base table at once (committed on
// its own unless the connection has a transaction open). Moving, Find,
// setting a filter and AddNew write a pending edit first, as ADO calls
// Update for them. Close refuses while an edit is pending (3219), as ADO
// does; CancelUpdate discards it.
#include <algorithm>
#include <unordered_set>

#include "platform/ado/ado.h"
#include "platform/ado/ado_errors.h"
#include "platform/ado/criteria.h"
#include "platform/ado/provider.h"
#include "platform/ado/provider_call.h"
#include "platform/ado/row_store.h"
#include "platform/automation/text_case.h"

namespace ado {

using automation::Variant;

namespace {

constexpr int32_t kBookmarkCurrent = 0;
constexpr int32_t kBookmarkFirst = 1;
constexpr int32_t kBookmarkLast = 2;

const char* const kNotUpdatable =
    "Current Recordset does not support updating. This may be a limitation of the provider, or of the selected "
    "locktype.";

// The value a row holds after a write: what reading it back would give.
Variant Stored(const Variant& v) {
    switch (v.Type()) {
        case automation::vtEmpty: return Variant::Null();
        case automation::vtInteger: return Variant::Long(v.CInt());
        case automation::vtBoolean: return Variant::Long(v.CBool() ? -1 : 0);
        default: return v;
    }
}

}  // namespace

struct Recordset::Impl : DeferredRead {
    enum class Edit { kNone, kChange, kAdd };

    com::ComPtr<Connection> connection;
    std::unique_ptr<Cursor> cursor;
    std::vector<std::string> columns;
    bool streaming = false;
    bool updatable = false;

    // Streaming state: the current row, how many rows were fetched, ends.
    std::vector<Variant> streamRow;
    RowKey streamKey = 0;
    int64_t fetched = 0;
    bool streamEof = true;

    // Client-side state: the rows and the current visible index (-1 BOF,
    // count EOF).
    RowStore store;
    int32_t current = 0;
    // Only the first row is read yet; the connection knows this recordset.
    bool deferred = false;

    // The pending edit.
    Edit edit = Edit::kNone;
    std::vector<int> editColumns;
    std::vector<Variant> editValues;
    int32_t indexBeforeAdd = 0;

    // The recordset's state, raising 3704 when it is closed.
    static Impl& Opened(const std::unique_ptr<Impl>& impl) {
        if (!impl->cursor) RaiseAdo(adErrObjectClosed, kRecordsetSource);
        return *impl;
    }

    Connection& Conn() { return *connection; }
    // The first column of that name, whatever its case. Fields are looked up
    // by name for every value read or written, and a recordset has few
    // columns: a scan that compares lengths first costs less than folding
    // the name and hashing it.
    int ColumnIndexOf(const std::string& name) const {
        for (size_t i = 0; i < columns.size(); ++i)
            if (automation::SameTextIgnoringCase(columns[i], name)) return static_cast<int>(i);
        return -1;
    }
    bool Empty() const { return streaming ? (fetched == 0 && streamEof) : store.VisibleCount() == 0; }
    bool AtBof() const { return streaming ? Empty() : (store.VisibleCount() == 0 || current < 0); }
    bool AtEof() const { return streaming ? streamEof : (store.VisibleCount() == 0 || current >= store.VisibleCount()); }
    bool HasCurrentRow() const { return edit == Edit::kAdd || (!AtBof() && !AtEof()); }
    const std::vector<Variant>& CurrentRow() const {
        return streaming ? streamRow : store.At(store.PositionAt(current));
    }

    void FetchNext() {
        std::vector<Variant> row;
        RowKey key = 0;
        if (CallProvider(Conn(), [&] { return cursor->Fetch(row, key); })) {
            streamRow = std::move(row);
            streamKey = key;
            ++fetched;
            streamEof = false;
        } else {
            streamEof = true;
        }
    }

    void ReadAll() {
        std::vector<Variant> row;
        RowKey key = 0;
        current = 0;
        if (cursor->RereadsCheaply()) {
            if (!CallProvider(Conn(), [&] { return cursor->Fetch(row, key); })) return;
            store.Append(std::move(row), key);
            // Ends the query, so that it holds no read open on the database.
            CallProvider(Conn(), [&] { cursor->Restart(); });
            deferred = true;
            Conn().AddDeferredRead(this);
            return;
        }
        while (CallProvider(Conn(), [&] { return cursor->Fetch(row, key); })) store.Append(row, key);
    }

    // Reads the rows after the first, placing them before the rows added
    // since the recordset opened, which the query now gives as well.
    void ReadRest() override {
        if (!deferred) return;
        StopDeferring();
        std::unordered_set<RowKey> held;
        if (updatable)
            for (int32_t p = 0; p < store.Size(); ++p) held.insert(store.Key(p));
        std::vector<RowStore::Row> rows;
        std::vector<RowKey> keys;
        std::vector<Variant> row;
        RowKey key = 0;
        bool first = true;
        CallProvider(Conn(), [&] { cursor->Restart(); });
        while (CallProvider(Conn(), [&] { return cursor->Fetch(row, key); })) {
            bool skip = updatable ? held.count(key) > 0 : first;
            first = false;
            if (skip) continue;
            rows.push_back(row);
            keys.push_back(key);
        }
        auto count = static_cast<int32_t>(rows.size());
        store.InsertAt(1, std::move(rows), std::move(keys));
        if (current >= 1) current += count;
        if (indexBeforeAdd >= 1) indexBeforeAdd += count;
    }

    void StopDeferring() {
        if (!deferred) return;
        deferred = false;
        Conn().RemoveDeferredRead(this);
    }

    int PendingSlot(int column) const {
        for (size_t i = 0; i < editColumns.size(); ++i)
            if (editColumns[i] == column) return static_cast<int>(i);
        return -1;
    }

    void ClearEdit() {
        edit = Edit::kNone;
        editColumns.clear();
        editValues.clear();
    }

    void WritePending() {
        if (edit == Edit::kNone) return;
        // Recordsets still to read must not see this row as it is now.
        Conn().CompleteDeferredReads(this);
        if (edit == Edit::kChange) ReadRest();
        std::vector<Variant> stored;
        for (const Variant& v : editValues) stored.push_back(Stored(v));
        if (edit == Edit::kAdd) {
            RowKey key = CallProvider(Conn(), [&] { return cursor->InsertRow(editColumns, editValues); });
            std::vector<Variant> row(columns.size(), Variant::Null());
            for (size_t i = 0; i < editColumns.size(); ++i) row[static_cast<size_t>(editColumns[i])] = stored[i];
            current = store.VisibleIndexOf(store.Append(std::move(row), key));
        } else {
            int32_t position = store.PositionAt(current);
            CallProvider(Conn(), [&] { cursor->UpdateRow(store.Key(position), store.At(position), editColumns, editValues); });
            store.Write(position, editColumns, stored);
        }
        ClearEdit();
    }
};

Recordset::Recordset() : impl_(std::make_unique<Impl>()) {}
Recordset::~Recordset() { impl_->StopDeferring(); }

com::ComPtr<Recordset> NewRecordset() { return Recordset::Create(); }

void Recordset::SetCursorLocation(int32_t location) {
    if (impl_->cursor) RaiseAdo(adErrObjectOpen, kRecordsetSource);
    if (location != adUseServer && location != adUseClient) RaiseAdo(adErrInvalidArgument, kRecordsetSource);
    cursorLocation_ = location;
}

void Recordset::Open(const std::string& source, Connection* connection, int32_t cursorType, int32_t lockType,
                     int32_t /*options: the source is always command text*/) {
    Impl& m = *impl_;
    if (m.cursor) RaiseAdo(adErrObjectOpen, kRecordsetSource);
    if (!connection || connection->State() != adStateOpen)
        RaiseAdo(adErrInvalidConnection, kRecordsetSource,
                 "The connection cannot be used to perform this operation. It is either closed or invalid in this "
                 "context.");
    if (source.empty()) RaiseAdo(adErrInvalidArgument, kRecordsetSource);
    bool forwardOnly = cursorType == adOpenForwardOnly || cursorType == adOpenUnspecified;
    bool readOnly = lockType == adLockReadOnly || lockType == adLockUnspecified;
    QueryOptions options;
    options.readAll = cursorLocation_ == adUseClient || !forwardOnly;
    options.editable = options.readAll && !readOnly;

    connection->GetErrors().Clear();
    Provider& provider = connection->GetProvider();
    std::unique_ptr<Cursor> cursor = CallProvider(*connection, [&] { return provider.OpenQuery(source, options); });

    m.StopDeferring();
    *impl_ = Impl();
    m.connection = connection;
    m.streaming = !options.readAll;
    m.updatable = options.editable && !cursor->BaseTable().empty();
    m.columns = cursor->Columns();
    m.cursor = std::move(cursor);
    filter_.clear();
    try {
        if (m.streaming)
            m.FetchNext();
        else
            m.ReadAll();
    } catch (...) {
        m.StopDeferring();
        *impl_ = Impl();
        throw;
    }
}

void Recordset::Close() {
    Impl& m = *impl_;
    if (!m.cursor) RaiseAdo(adErrObjectClosed, kRecordsetSource);
    if (m.edit != Impl::Edit::kNone) RaiseAdo(adErrIllegalOperation, kRecordsetSource);
    m.StopDeferring();
    *impl_ = Impl();
    filter_.clear();
}

int32_t Recordset::State() const { return impl_->cursor ? adStateOpen : adStateClosed; }

bool Recordset::BOF() const {
    const Impl& m = Impl::Opened(impl_);
    return m.edit != Impl::Edit::kAdd && m.AtBof();
}

bool Recordset::EOF() const {
    const Impl& m = Impl::Opened(impl_);
    return m.edit != Impl::Edit::kAdd && m.AtEof();
}

int32_t Recordset::RecordCount() const {
    Impl& m = Impl::Opened(impl_);
    m.ReadRest();
    return m.streaming ? -1 : m.store.VisibleCount();
}

void Recordset::MoveFirst() {
    Impl& m = Impl::Opened(impl_);
    m.WritePending();
    if (m.Empty()) RaiseAdo(adErrNoCurrentRecord, kRecordsetSource);
    if (!m.streaming) {
        m.current = 0;
    } else if (m.fetched != 1 || m.streamEof) {
        CallProvider(m.Conn(), [&] { m.cursor->Restart(); });
        m.fetched = 0;
        m.FetchNext();
    }
}

void Recordset::MoveNext() {
    Impl& m = Impl::Opened(impl_);
    m.WritePending();
    m.ReadRest();
    if (m.AtEof()) RaiseAdo(adErrNoCurrentRecord, kRecordsetSource);
    if (m.streaming)
        m.FetchNext();
    else
        ++m.current;
}

void Recordset::MovePrevious() {
    Impl& m = Impl::Opened(impl_);
    if (m.streaming) RaiseAdo(adErrFeatureNotAvailable, kRecordsetSource);
    m.WritePending();
    m.ReadRest();
    if (m.AtBof()) RaiseAdo(adErrNoCurrentRecord, kRecordsetSource);
    m.current = std::min(m.current, m.store.VisibleCount()) - 1;
}

void Recordset::MoveLast() {
    Impl& m = Impl::Opened(impl_);
    if (m.streaming) RaiseAdo(adErrFeatureNotAvailable, kRecordsetSource);
    m.WritePending();
    m.ReadRest();
    if (m.Empty()) RaiseAdo(adErrNoCurrentRecord, kRecordsetSource);
    m.current = m.store.VisibleCount() - 1;
}

int32_t Recordset::FieldCount() const { return static_cast<int32_t>(Impl::Opened(impl_).columns.size()); }

Field Recordset::Fields(const std::string& name) {
    const Impl& m = Impl::Opened(impl_);
    int index = m.ColumnIndexOf(name);
    if (index < 0) RaiseAdo(adErrItemNotFound, kRecordsetSource);
    return Field(this, index);
}

Field Recordset::Fields(int32_t index) {
    const Impl& m = Impl::Opened(impl_);
    if (index < 0 || index >= static_cast<int32_t>(m.columns.size())) RaiseAdo(adErrItemNotFound, kRecordsetSource);
    return Field(this, index);
}

const std::string& Recordset::FieldName(int index) const { return Impl::Opened(impl_).columns[static_cast<size_t>(index)]; }

Variant Recordset::FieldValue(int index) const {
    const Impl& m = Impl::Opened(impl_);
    if (!m.HasCurrentRow()) RaiseAdo(adErrNoCurrentRecord, kFieldSource);
    int slot = m.PendingSlot(index);
    if (slot >= 0) return m.editValues[static_cast<size_t>(slot)];
    if (m.edit == Impl::Edit::kAdd) return Variant::Null();
    return m.CurrentRow()[static_cast<size_t>(index)];
}

void Recordset::SetFieldValue(int index, const Variant& value) {
    Impl& m = Impl::Opened(impl_);
    if (!m.updatable) RaiseAdo(adErrFeatureNotAvailable, kFieldSource, kNotUpdatable);
    if (!m.HasCurrentRow()) RaiseAdo(adErrNoCurrentRecord, kFieldSource);
    if (value.IsObject() || value.IsArray()) RaiseAdo(adErrInvalidArgument, kFieldSource);
    if (m.edit == Impl::Edit::kNone) m.edit = Impl::Edit::kChange;
    int slot = m.PendingSlot(index);
    if (slot >= 0) {
        m.editValues[static_cast<size_t>(slot)] = value;
    } else {
        m.editColumns.push_back(index);
        m.editValues.push_back(value);
    }
}

void Recordset::AddNew() {
    Impl& m = Impl::Opened(impl_);
    if (!m.updatable) RaiseAdo(adErrFeatureNotAvailable, kRecordsetSource, kNotUpdatable);
    m.WritePending();
    m.indexBeforeAdd = m.current;
    m.edit = Impl::Edit::kAdd;
}

void Recordset::Update() {
    Impl::Opened(impl_);
    impl_->WritePending();
}

void Recordset::Save() {
    // With no destination there is nothing to persist but a pending edit; a
    // recordset opened from a query has no file or stream to write.
    Update();
}

void Recordset::CancelUpdate() {
    Impl& m = Impl::Opened(impl_);
    if (m.edit == Impl::Edit::kAdd) m.current = m.indexBeforeAdd;
    m.ClearEdit();
}

void Recordset::Find(const std::string& text, int32_t skipRecords, int32_t searchDirection, const Variant& start) {
    Impl& m = Impl::Opened(impl_);
    bool forward = searchDirection != adSearchBackward;
    if (searchDirection != adSearchForward && searchDirection != adSearchBackward)
        RaiseAdo(adErrInvalidArgument, kRecordsetSource);
    int32_t bookmark = kBookmarkCurrent;
    if (!start.IsEmpty()) {
        if (!start.IsNumeric()) RaiseAdo(adErrInvalidArgument, kRecordsetSource);
        bookmark = start.CLng();
        if (bookmark < kBookmarkCurrent || bookmark > kBookmarkLast) RaiseAdo(adErrInvalidArgument, kRecordsetSource);
    }
    criteria::Criteria c = criteria::Criteria::Parse(text, true);
    c.Bind([&](const std::string& name) { return m.ColumnIndexOf(name); });
    m.WritePending();
    m.ReadRest();

    if (m.streaming) {
        // A stream can only search onwards from where it stands.
        if (!forward || bookmark == kBookmarkLast) RaiseAdo(adErrFeatureNotAvailable, kRecordsetSource);
        if (bookmark == kBookmarkFirst) MoveFirst();
        for (int32_t i = 0; i < skipRecords && !m.streamEof; ++i) m.FetchNext();
        while (!m.streamEof && !c.Matches(m.streamRow)) m.FetchNext();
        return;
    }
    int32_t from = bookmark == kBookmarkFirst ? 0 : bookmark == kBookmarkLast ? m.store.VisibleCount() - 1 : m.current;
    from += forward ? skipRecords : -skipRecords;
    int32_t found = m.store.Find(c, from, forward);
    m.current = found >= 0 ? found : (forward ? m.store.VisibleCount() : -1);
}

void Recordset::SetFilter(const std::string& text) {
    Impl& m = Impl::Opened(impl_);
    if (m.streaming) RaiseAdo(adErrFeatureNotAvailable, kRecordsetSource);
    m.ReadRest();
    if (text.empty()) {
        m.WritePending();
        m.store.ClearFilter();
    } else {
        criteria::Criteria c = criteria::Criteria::Parse(text, false);
        c.Bind([&](const std::string& name) { return m.ColumnIndexOf(name); });
        m.WritePending();
        m.store.SetFilter(c);
    }
    filter_ = text;
    m.current = 0;
}

// ---- Field ---------------------------------------------------------------------

const std::string& Field::Name() const { return owner_->FieldName(index_); }
Variant Field::Value() const { return owner_->FieldValue(index_); }
void Field::SetValue(const Variant& value) { owner_->SetFieldValue(index_, value); }

}  // namespace ado
