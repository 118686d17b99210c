-- A workspace's items in the orders in which people look through them.
CREATE INDEX item_changed ON item (workspace_id, changed_at, id);
CREATE INDEX item_name ON item (workspace_id, lower(caption), id);
