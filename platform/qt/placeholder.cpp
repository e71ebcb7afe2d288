// windows come here
