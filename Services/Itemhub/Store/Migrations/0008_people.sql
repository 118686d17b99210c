-- What lets somebody without an account make one for himself, once, with a role in a workspace; 0 stands for all.
CREATE TABLE invitation (
    id @ID@,
    hash VARCHAR(64) NOT NULL UNIQUE,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    workspace_id BIGINT NOT NULL,
    role SMALLINT NOT NULL,
    label VARCHAR(255) NOT NULL,
    invited_by BIGINT NOT NULL REFERENCES account (id),
    created_at BIGINT NOT NULL,
    expires_at BIGINT NOT NULL
);

CREATE INDEX invitation_workspace ON invitation (tenant_id, workspace_id, id);

-- Administrators look back through what happened to their own customer.
CREATE INDEX audit_tenant ON audit (tenant_id, id);
