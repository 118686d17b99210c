-- People who have roles together; workspace 0 stands for all.
CREATE TABLE team (
    id @ID@,
    tenant_id BIGINT NOT NULL REFERENCES tenant (id),
    name VARCHAR(255) NOT NULL,
    created_at BIGINT NOT NULL,
    UNIQUE (tenant_id, name)
);

CREATE TABLE team_member (
    team_id BIGINT NOT NULL REFERENCES team (id),
    account_id BIGINT NOT NULL REFERENCES account (id),
    PRIMARY KEY (team_id, account_id)
);

CREATE INDEX team_member_account ON team_member (account_id);

CREATE TABLE team_role (
    team_id BIGINT NOT NULL REFERENCES team (id),
    workspace_id BIGINT NOT NULL,
    role SMALLINT NOT NULL,
    PRIMARY KEY (team_id, workspace_id)
);

-- All roles that an account has somewhere; team 0 stands for a role of its own.
CREATE VIEW held_role AS
    SELECT account_id, workspace_id, role, 0 AS team_id FROM membership
    UNION ALL
    SELECT m.account_id, r.workspace_id, r.role, m.team_id FROM team_member m JOIN team_role r ON r.team_id = m.team_id;
